#include <quorl/objects/VObjectParametersFunctor.h>

#include <quorl/objects/VObject.h>
#include <quorl/services/VScriptParameters.h>
#include <quorl/services/VScriptValue.h>

namespace Quorl
{

VObjectParametersFunctor::VObjectParametersFunctor(const WeakPtr<VObject>& object) : object_(object)
{
}

VObjectParametersFunctor::~VObjectParametersFunctor() = default;

RefPtr<VScriptParameters> VObjectParametersFunctor::describe() const
{
    return RefPtr<VScriptParameters>(new VScriptParameters);
}

RefPtr<VScriptValue> VObjectParametersFunctor::call(const RefPtr<VScriptParameters>& /*arguments*/,
                                                    const RefPtr<ValuePool>& /*context*/)
{
    constexpr int kBasicLevel = 0;
    if (!object_) return {};
    const int count = object_->getNumberOfParameters(kBasicLevel);
    return RefPtr<VScriptValue>(new VScriptValue(typeid(int), std::to_string(count)));
}

} // namespace Quorl
