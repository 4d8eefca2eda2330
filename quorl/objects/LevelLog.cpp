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
    parts_.push_back({part, records_.size()});
    if (parts_.size() >= kMostParts) enterAll();
}

const LevelLog::Table& LevelLog::table() const
{
    const std::lock_guard lock(mutex_);
    enterAll();
    return table_;
}

/// Those that wait are not many more than those that are known, so each is entered at little cost.
void LevelLog::enterAll() const
{
    std::size_t place = 0;
    for (const PlacedPart& part : parts_)
    {
        for (; place < part.place; ++place) enter(records_[place], 0);
        for (std::size_t at = part.begin; at < part.end; ++at)
            enter((*part.records)[at], part.deeper);
    }
    for (; place < records_.size(); ++place) enter(records_[place], 0);
    records_.clear();
    parts_.clear();
    most_ = std::max(kMostRecords, table_.size());
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
