#include <quorl/objects/RequestExecutor.h>

#include <quorl/objects/Repeats.h>

#include <algorithm>

namespace Tolmen
{
template class ReferenceBase<Quorl::RequestExecutor::MaxRequestExecutor>;
} // namespace Tolmen

namespace Quorl
{

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
    Max->Changes = Max->Changes + 1;
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

RequestExecutor::Descents RequestExecutor::Descents::from(std::int32_t level) const
{
    return {areSeveral, first + level, beforeLast + level, last + level, deepest + level, changes};
}

void RequestExecutor::descend(const RefPtr<MaxRequestExecutor>& chain, std::int32_t level)
{
    descend(chain, {false, level, 0, level, level, 0});
}

void RequestExecutor::descend(const RefPtr<MaxRequestExecutor>& chain, const Descents& descents)
{
    if (!(Max == chain)) Max.quietly() = chain;
    Max->MaxLevel.value_ = std::max(Max->MaxLevel.value_, descents.deepest);
    Max->Changes.value_ += descents.changes + (Level.value_ == descents.first ? 0 : 1);
    PreviousLevel.value_ = descents.areSeveral ? descents.beforeLast : Level.value_;
    Level.value_ = descents.last;
}

} // namespace Quorl
