#include <quorl/kit/Network.h>

#include <quorl/objects/VObject.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/slots/VParameter.h>

namespace Quorl
{

RefPtr<VCreatorBase> findCreator(const string& key)
{
    return VManagedObject::find(typeid(VInputCreatorBase), key);
}

bool setText(const VSlotContainer& object, const string& input, const string& text,
             const RefPtr<ValuePool>& pool)
{
    const RefPtr<VParameter> parameter = object.getParameter(input);
    return parameter && parameter->setValueFromText(text, pool, "", true, {}, nullptr, nullptr);
}

string connectInAllWays(const RefPtr<VObject>& parent, const RefPtr<VObject>& child)
{
    const RefPtr<VCreatorBase> creator = child->Creator;
    for (const RefPtr<VAcceptInfo>& way : creator->accept(parent))
        if (!parent->connectChild(child, way).second) return way->name;
    return {};
}

} // namespace Quorl
