#pragma once

namespace Quorl
{

/// Marks the classes whose slots a `ValueCache` can watch.
class ValueCacheable
{
};

} // namespace Quorl
