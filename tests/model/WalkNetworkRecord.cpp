#include <tests/model/WalkNetwork.h>

#include <quorl/objects/VObjectAge.h>
#include <tests/model/At.h>

#include <algorithm>
#include <cstdint>

/// What is seen of a network.
namespace QuorlTest::Walks
{

using Quorl::RefPtr;
using Quorl::VObject;
using Quorl::VRequest;
using Quorl::VSlot;
using Quorl::WeakPtr;
using Quorl::WeakVObjectPtr;

namespace
{

constexpr std::size_t kRecent = 3; // evaluations whose tables are noted each time
constexpr int kNever = -2;         // for an age that was not asked for yet

} // namespace

int Network::numberOf(const WeakVObjectPtr& wanted) const
{
    if (!wanted) return -1;
    return numberOfSerial(wanted->ID);
}

int Network::numberOf(const VSlot& wanted) const
{
    const auto place =
        std::ranges::find_if(slots_, [&](const RefPtr<VSlot>& slot) { return &*slot == &wanted; });
    return static_cast<int>(place - slots_.begin());
}

int Network::numberOfSerial(int serial) const
{
    const auto place = std::ranges::find(serials_, serial);
    return place == serials_.end() ? std::min(serial, 0)
                                   : static_cast<int>(place - serials_.begin());
}

/// \return -1 for none, and the number of an evaluation also if it has ended.
int Network::numberOf(const WeakPtr<VRequest::ID>& id) const
{
    if (!id.referer) return -1;
    const auto place = std::ranges::find(evaluations_.rbegin(), evaluations_.rend(), id);
    return static_cast<int>(evaluations_.rend() - place) - 1;
}

/// The first object with the same maximum.
int Network::firstOfChain(int number) const
{
    const auto& chain = objects_[at(number)]->Executor.Max;
    for (int other = 0; other < number; ++other)
        if (objects_[at(other)] && objects_[at(other)]->Executor.Max == chain) return other;
    return number;
}

void Network::record()
{
    for (std::size_t number = 0; number < objects_.size(); ++number)
        recordObject(static_cast<int>(number));
    for (std::size_t number = 0; number < parameters_.size(); ++number)
        recordParameter(static_cast<int>(number));
    if (lastTicket_) recordRequest(*lastTicket_);
    transcript_.note("clock", Quorl::Ageable::GlobalTime.stamp());
    const std::size_t count = evaluations_.size();
    for (std::size_t number = count - std::min(count, kRecent); number < count; ++number)
        if (evaluations_[number]) recordTable(*evaluations_[number]);
}

void Network::recordAll()
{
    record();
    for (const auto& evaluation : evaluations_)
        if (evaluation) recordTable(*evaluation);
}

void Network::recordObject(int number)
{
    const bool isAlive = static_cast<bool>(objects_[at(number)]);
    transcript_.note("object", number, isAlive);
    if (!isAlive) return;
    const VObject& found = *objects_[at(number)];
    look(number);
    transcript_.note("connect", found.ConnectionAge().stamp());
    transcript_.note("validate", validators_[at(number)]->stamp(),
                     numberOfSerial(validators_[at(number)]->Taint));
    transcript_.note("age", found.LocalAge.stamp());
    for (const auto& pool : pools_)
    {
        if (!pool) continue;
        auto& ages = pool->ObjectAgePool();
        const auto age = ages.find(WeakPtr<Quorl::VSlotContainer>(&found));
        transcript_.note("age in", age == ages.end() ? kNever : age->second.stamp());
    }
}

/// What others may ask of an object at any time.
void Network::look(int number)
{
    const VObject& found = *objects_[at(number)];
    const Quorl::RequestExecutor& executor = found.Executor;
    transcript_.note("trace", number, static_cast<bool>(found.Current), numberOf(found.Current),
                     numberOf(WeakPtr<VRequest::ID>(found.Previous)),
                     numberOf(WeakPtr<VRequest::ID>(found.Latest)));
    transcript_.note("depth", static_cast<std::int32_t>(executor.Level),
                     static_cast<std::int32_t>(executor.PreviousLevel),
                     static_cast<std::int32_t>(executor.Max->MaxLevel),
                     static_cast<std::int32_t>(executor.Max->Changes), firstOfChain(number));
    transcript_.note("counters", found.RequestCounter.value(), found.UpdateCounter.value());
}

void Network::recordParameter(int number)
{
    const Quorl::VParameter& found = *parameters_[at(number)];
    transcript_.note("value", number, found.isLocal());
    for (const auto& pool : pools_) transcript_.note("value in", found.age(pool).stamp());
}

void Network::recordTable(const VRequest::ID& id)
{
    transcript_.note("table", numberOf(WeakPtr<VRequest::ID>(&id)));
    for (const auto& [serial, level] : id.levels())
        transcript_.note("level", numberOfSerial(serial), level.MinLevel, level.MaxLevel,
                         level.Count, numberOfSerial(level.MinCaller),
                         numberOfSerial(level.MaxCaller));
}

void Network::recordRequest(const VRequest& request)
{
    transcript_.note("ticket", request.NewestConnection.stamp(),
                     numberOfSerial(request.NewestConnectionObject),
                     numberOf(WeakPtr<VRequest::ID>(request.Id)), request.stamp());
}

void Network::opened(const Tolmen::Profiler::Section& section)
{
    transcript_.text("opened", section.object + " " + std::to_string(section.detail));
}

void Network::closed(const Tolmen::Profiler::Section& section, double /*seconds*/)
{
    transcript_.text("closed", section.object);
}

} // namespace QuorlTest::Walks
