#include <quorl/objects/RequestExecutor.h>

#include <quorl/objects/LevelCourse.h>
#include <quorl/objects/Repeats.h>

#include <algorithm>
#include <mutex>

namespace Tolmen
{
template class ReferenceBase<Quorl::RequestExecutor::MaxRequestExecutor>;
} // namespace Tolmen

namespace Quorl
{
namespace
{

constexpr std::size_t kMostDebts = 8; // each is as large as what was walked

constinit std::mutex theReaders; // of all sums, which are hardly ever read

} // namespace

RequestExecutor::Reckoned& RequestExecutor::Reckoned::operator=(const Reckoned& other)
{
    return *this = std::int32_t{other};
}

RequestExecutor::Reckoned& RequestExecutor::Reckoned::operator=(std::int32_t value)
{
    Repeats::upsetAll();
    value_ = value;
    return *this;
}

RequestExecutor::Reckoned::operator std::int32_t() const
{
    Repeats::realizeAll();
    return value_;
}

RequestExecutor::ReckonedSum::ReckonedSum() = default;
RequestExecutor::ReckonedSum::ReckonedSum(const ReckonedSum& other) : value_(other) {}
RequestExecutor::ReckonedSum::~ReckonedSum() = default;

RequestExecutor::ReckonedSum& RequestExecutor::ReckonedSum::operator=(const ReckonedSum& other)
{
    return *this = std::int32_t{other};
}

RequestExecutor::ReckonedSum& RequestExecutor::ReckonedSum::operator=(std::int32_t value)
{
    Repeats::upsetAll();
    debts_.clear();
    value_ = value;
    return *this;
}

RequestExecutor::ReckonedSum::operator std::int32_t() const
{
    Repeats::realizeAll();
    const std::lock_guard lock(theReaders);
    settle();
    return value_;
}

/// Walks of a network that keeps its shape owe the same again and again.
void RequestExecutor::ReckonedSum::owe(const std::shared_ptr<const LevelCourse>& course,
                                       Places places)
{
    auto debt = std::ranges::find_if(debts_, [&](const Debt& known) {
        return known.course == course || *known.course == *course;
    });
    if (debt == debts_.end())
    {
        if (debts_.size() == kMostDebts) settle();
        debts_.push_back({course, {}});
        debt = debts_.end() - 1;
    }
    ++debt->times[places];
}

void RequestExecutor::ReckonedSum::settle() const
{
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    for (; !debts_.empty(); debts_.pop_back())
    {
        std::int64_t sum = 0;
        for (const auto& [places, times] : debts_.back().times)
            if (value_ + sum < kMost)
                sum += std::min<std::int64_t>(times, kMost) *
                       debts_.back().course->changes(places.first, places.second);
        add(std::min<std::int64_t>(sum, kMost));
    }
}

RequestExecutor::Chain& RequestExecutor::Chain::operator=(const RefPtr<MaxRequestExecutor>& other)
{
    Repeats::upsetAll();
    quietly() = other;
    return *this;
}

RequestExecutor::MaxRequestExecutor::MaxRequestExecutor() = default;
RequestExecutor::MaxRequestExecutor::~MaxRequestExecutor() = default;

RequestExecutor::RequestExecutor() : Max(new MaxRequestExecutor) {}

RequestExecutor::RequestExecutor(const RequestExecutor& caller)
    : Level(caller.Level + 1), Max(caller.Max)
{
    Max->MaxLevel = Level;
    Max->Changes.add(1);
}

// A chain that is assigned to itself goes one deeper, too.
RequestExecutor& RequestExecutor::operator=(const RequestExecutor& caller)
{
    Repeats::upsetAll();
    descend(caller.Max, caller.Level.value_ + 1);
    return *this;
}

RequestExecutor::~RequestExecutor() = default;

void RequestExecutor::reset()
{
    Level = 0;
    Max = RefPtr<MaxRequestExecutor>(new MaxRequestExecutor);
}

} // namespace Quorl
