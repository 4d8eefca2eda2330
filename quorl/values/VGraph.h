#pragma once

namespace Quorl
{

/// Stands for the whole network as the type of a value.
class VGraph
{
};

} // namespace Quorl
