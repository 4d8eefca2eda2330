#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>

namespace Quorl
{

/// The type of a parameter that stands for a graph of any kind, so that a slot can be made for it.
class QUORL_API VGraph
{
    friend bool operator==(const VGraph&, const VGraph&) = default;
};

} // namespace Quorl
