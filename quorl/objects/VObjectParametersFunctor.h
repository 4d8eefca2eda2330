#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/services/VScriptFunctor.h>

namespace Quorl
{

/// What each object offers to scripts: the number of its basic inputs, those up to the level 0.
class VObjectParametersFunctor final : public VScriptFunctor
{
public:
    explicit VObjectParametersFunctor(const WeakPtr<VObject>& object);
    ~VObjectParametersFunctor() override;

    RefPtr<VScriptParameters> describe() const override; ///< no arguments

    /// \return an `int`; null once the object has ended.
    RefPtr<VScriptValue> call(const RefPtr<VScriptParameters>& arguments,
                              const RefPtr<ValuePool>& context) override;

private:
    const WeakPtr<VObject> object_;
};

} // namespace Quorl
