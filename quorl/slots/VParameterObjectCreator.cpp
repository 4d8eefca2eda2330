#include <quorl/slots/VParameterObjectCreator.h>

#include <quorl/objects/VObject.h>
#include <quorl/slots/VParameter.h>

namespace Quorl
{

VParameterObjectCreator::VParameterObjectCreator() = default;
VParameterObjectCreator::~VParameterObjectCreator() = default;

RefPtr<VParameter> VParameterObjectCreator::getImplementation(const std::type_info& type,
                                                              const string& name)
{
    const RefPtr<VObject> object = createObject();
    if (!object) return {};
    const RefPtr<VParameter> parameter = object->getImplementation(type, name, "");
    if (parameter) parameter->setSource(WeakPtr<VSlotContainer>(object));
    return parameter;
}

} // namespace Quorl
