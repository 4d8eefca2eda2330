#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/values/ValuePool.h>

namespace Quorl
{

/// Makes pools on demand. It registers nothing by itself: the application enters it in
/// `VGlobals::poolCreators`.
class QUORL_API ValuePoolCreator : public Tolmen::ReferenceBase<ValuePoolCreator>
{
public:
    ValuePoolCreator();
    ~ValuePoolCreator() override;

    /// Makes a pool of that name; null if this creator has none.
    virtual RefPtr<ValuePool> createPool(const string& name) = 0;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::ValuePoolCreator>;
} // namespace Tolmen
