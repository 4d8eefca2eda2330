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

} // namespace Quorl
