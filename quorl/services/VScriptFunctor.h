#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// An operation that scripts can call. What it does with arguments that do not fit is its own
/// affair. It runs on the caller's thread.
class QUORL_API VScriptFunctor : public Tolmen::ReferenceBase<VScriptFunctor>
{
public:
    ~VScriptFunctor() override = 0;

    virtual RefPtr<VScriptParameters> describe() const = 0; ///< what arguments it takes

    /// Runs it in a context.
    virtual RefPtr<VScriptValue> call(const RefPtr<VScriptParameters>& arguments,
                                      const RefPtr<ValuePool>& context) = 0;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VScriptFunctor>;
} // namespace Tolmen
