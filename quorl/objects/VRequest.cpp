#include <quorl/objects/VRequest.h>

#include <quorl/objects/OwnOperations.h>
#include <quorl/objects/Repeats.h>
#include <quorl/values/ValuePool.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace Tolmen
{
template class ReferenceBase<Quorl::VRequest::ID>;
} // namespace Tolmen

namespace Quorl
{
namespace
{

constexpr std::int32_t kMostVisits = std::numeric_limits<std::int32_t>::max();

VRequest::ID::Level deeper(VRequest::ID::Level level, std::int32_t by)
{
    level.MinLevel += by;
    level.MaxLevel += by;
    return level;
}

} // namespace

VRequest::ID::ID() = default;
VRequest::ID::~ID() = default;

VRequest::ID::Level& VRequest::ID::recordOf(std::int32_t object)
{
    unfold();
    isTableTrue_ = false;
    std::uint32_t place = places_.find(object);
    if (place == 0)
    {
        records_.push_back({object, {}});
        place = static_cast<std::uint32_t>(records_.size());
        places_.insert(object, place);
    }
    return records_[place - 1].level;
}

void VRequest::ID::considerLevel(int level, long object, long caller)
{
    Repeats::realizeAll();
    const auto callerNumber = static_cast<std::int32_t>(caller);
    considerVisits({level, level, 1, callerNumber, callerNumber},
                   static_cast<std::int32_t>(object));
}

void VRequest::ID::considerVisits(const Level& visits, std::int32_t object)
{
    Level& record = recordOf(object);
    if (record.Count < 1)
    {
        record = visits;
        return;
    }
    if (visits.MinLevel < record.MinLevel)
    {
        record.MinLevel = visits.MinLevel;
        record.MinCaller = visits.MinCaller;
    }
    if (visits.MaxLevel > record.MaxLevel)
    {
        record.MaxLevel = visits.MaxLevel;
        record.MaxCaller = visits.MaxCaller;
    }
    record.Count += std::min(visits.Count, kMostVisits - record.Count);
}

void VRequest::ID::considerEvaluation(const std::shared_ptr<const Records>& records,
                                      std::int32_t level)
{
    const bool isAll = records_.empty() && !folded_;
    if (!isAll)
    {
        for (const Record& record : *records)
            considerVisits(deeper(record.level, level), record.object);
        return;
    }
    folded_ = records;
    foldedLevel_ = level;
    isTableTrue_ = false;
}

/// Other evaluations are to be recorded beside the one that was all.
void VRequest::ID::unfold()
{
    const std::shared_ptr<const Records> folded = std::exchange(folded_, nullptr);
    if (!folded) return;
    for (const Record& record : *folded)
        recordOf(record.object) = deeper(record.level, foldedLevel_);
}

const std::map<std::int32_t, VRequest::ID::Level>& VRequest::ID::levels() const
{
    Repeats::realizeAll();
    const std::lock_guard lock(tableMutex_);
    if (!isTableTrue_)
        for (const Record& record : records_) table_[record.object] = record.level;
    if (!isTableTrue_ && folded_)
        for (const Record& record : *folded_)
            table_[record.object] = deeper(record.level, foldedLevel_);
    isTableTrue_ = true;
    return table_;
}

VRequest::VRequest(const RefPtr<ValuePool>& pool, bool flag)
    : Flag(flag), Pool(pool), Id(new VRequest::ID)
{
    OwnOperations::learnDefaults(*this);
}

// A ticket of its own: neither its moment nor its mutex is the other's.
VRequest::VRequest(const VRequest& other) // NOLINT(bugprone-copy-constructor-init)
    : Ageable(), Tolmen::mutex(), Flag(other.Flag), Pool(other.Pool), Id(other.Id)
{
    OwnOperations::learnDefaults(*this);
}

VRequest::~VRequest() = default;

bool VRequest::isCancelled() const
{
    return false;
}

void VRequest::updateFrom(const VRequest& other)
{
    if (!(NewestConnection < other.NewestConnection)) return;
    NewestConnection = other.NewestConnection;
    NewestConnectionObject = other.NewestConnectionObject;
}

void VRequest::addInterface(const RefPtr<Tolmen::InterfaceBase>& interface)
{
    if (!Attachments) Attachments = new Task;
    Attachments->addInterface(interface);
}

} // namespace Quorl
