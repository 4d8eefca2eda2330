#pragma once

#include <quorl/Forward.h>

namespace Quorl
{

/// Stands for the whole network as the type of a value.
class VGraph
{
};

} // namespace Quorl
