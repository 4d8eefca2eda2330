#include <quorl/objects/RequestExecutor.h>

#include <algorithm>

namespace Tolmen
{
template class ReferenceBase<Quorl::RequestExecutor::MaxRequestExecutor>;
} // namespace Tolmen

namespace Quorl
{

RequestExecutor::MaxRequestExecutor::MaxRequestExecutor() = default;
RequestExecutor::MaxRequestExecutor::~MaxRequestExecutor() = default;

RequestExecutor::RequestExecutor() : Max(new MaxRequestExecutor) {}

RequestExecutor::RequestExecutor(const RequestExecutor& caller)
    : Level(caller.Level + 1), Max(caller.Max)
{
    Max->MaxLevel = Level;
    ++Max->Changes;
}

// A chain that is assigned to itself goes one deeper, too.
RequestExecutor& RequestExecutor::operator=(const RequestExecutor& caller)
{
    PreviousLevel = Level;
    Level = caller.Level + 1;
    Max = caller.Max;
    Max->MaxLevel = std::max(Max->MaxLevel, Level);
    if (Level != PreviousLevel) ++Max->Changes;
    return *this;
}

RequestExecutor::~RequestExecutor() = default;

void RequestExecutor::reset()
{
    Level = 0;
    Max = new MaxRequestExecutor;
}

} // namespace Quorl
