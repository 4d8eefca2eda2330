#include <quorl/objects/RequestExecutor.h>

#include <quorl/objects/LevelDebt.h>
#include <quorl/objects/Repeats.h>

#include <mutex>

namespace Tolmen
{
template class ReferenceBase<Quorl::RequestExecutor::MaxRequestExecutor>;
} // namespace Tolmen

namespace Quorl
{
namespace
{

constexpr std::size_t kMostDebts = std::size_t{1} << 22; // visits and ways, some 20 bytes each

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
    while (!debts_.empty()) settleOne();
    return value_;
}

/// Walks of a network that keeps its shape owe the same again and again.
void RequestExecutor::ReckonedSum::owe(const std::shared_ptr<const LevelCourse>& course,
                                       Places places)
{
    debtOf(course).add(places);
}

/// Where all memory for debts is in use, one is settled for each that comes.
LevelDebt& RequestExecutor::ReckonedSum::debtOf(const std::shared_ptr<const LevelCourse>& course)
{
    Debts& debts = debts_.made();
    const auto [begin, end] = debts.equal_range(course->fingerprint());
    for (auto known = begin; known != end; ++known)
        if (known->second->isOf(course)) return *known->second;
    if (!debts.empty() && LevelDebt::sizeOfAll() + course->size() > kMostDebts) settleOne();
    return *debts.emplace(course->fingerprint(), std::make_unique<LevelDebt>(course))->second;
}

void RequestExecutor::ReckonedSum::settleOne() const
{
    const auto debt = debts_.begin();
    add(debt->second->changes(value_));
    debts_.erase(debt);
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
