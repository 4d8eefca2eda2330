#include <quorl/objects/LevelDebt.h>

#include <algorithm>
#include <limits>

namespace Quorl
{
namespace
{

constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();

} // namespace

constinit std::atomic<std::size_t> LevelDebt::theSize{0};

LevelDebt::LevelDebt(const Course& course) : course_(course)
{
    theSize.fetch_add(course_->size(), std::memory_order_relaxed);
}

LevelDebt::~LevelDebt()
{
    theSize.fetch_sub(course_->size(), std::memory_order_relaxed);
}

std::int64_t LevelDebt::changes(std::int64_t known) const
{
    std::int64_t sum = 0;
    for (const auto& [places, times] : times_)
        if (known + sum < kMost)
            sum += std::min(times, kMost) * course_->changes(places.first, places.second);
    return std::min(sum, kMost);
}

} // namespace Quorl
