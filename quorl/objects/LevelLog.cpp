#include <quorl/objects/LevelLog.h>

#include <algorithm>
#include <limits>

namespace Quorl
{
namespace
{

constexpr std::int32_t kMostVisits = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t kMostRecords = std::size_t{1} << 20;
constexpr std::size_t kMostParts = 1024;

} // namespace

LevelLog::LevelLog() : most_(kMostRecords) {}
LevelLog::~LevelLog() = default;

void LevelLog::add(const Part& part)
{
    if (parts_.size() >= kMostParts) enterAll();
    parts_.push_back({part, records_.size()});
}

void LevelLog::reserve(std::size_t visits)
{
    if (records_.size() + visits > most_) enterAll();
    const std::size_t wanted = records_.size() + visits;
    if (wanted > records_.capacity()) records_.reserve(std::max(wanted, 2 * records_.capacity()));
    most_ = std::max(most_, wanted);
}

const LevelLog::Table& LevelLog::table() const
{
    const std::lock_guard lock(mutex_);
    enterAll();
    return table_;
}

/// Those that wait are not many more than those that are known, so each is entered at little cost.
/// Where it ends early, it goes on the next time.
void LevelLog::enterAll() const
{
    for (PlacedPart& part : parts_)
    {
        enterUpTo(part.place);
        for (; part.begin < part.end; ++part.begin) enter((*part.records)[part.begin], part.deeper);
    }
    enterUpTo(records_.size());
    records_.clear();
    entered_ = 0;
    parts_.clear();
    most_ = std::max(kMostRecords, table_.size());
}

void LevelLog::enterUpTo(std::size_t place) const
{
    for (; entered_ < place; ++entered_) enter(records_[entered_], 0);
}

/// Of several callers at one extreme level the first stays.
void LevelLog::enter(const Record& record, std::int32_t deeper) const
{
    const Level& visits = record.level;
    const std::int32_t minLevel = visits.MinLevel + deeper;
    const std::int32_t maxLevel = visits.MaxLevel + deeper;
    Level& known = table_[record.object];
    if (known.Count < 1)
    {
        known = {minLevel, maxLevel, visits.Count, visits.MinCaller, visits.MaxCaller};
        return;
    }
    if (minLevel < known.MinLevel)
    {
        known.MinLevel = minLevel;
        known.MinCaller = visits.MinCaller;
    }
    if (maxLevel > known.MaxLevel)
    {
        known.MaxLevel = maxLevel;
        known.MaxCaller = visits.MaxCaller;
    }
    known.Count += std::min(visits.Count, kMostVisits - known.Count);
}

} // namespace Quorl
