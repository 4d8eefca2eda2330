#include <quorl/values/VValueBase.h>

#include <quorl/registry/VManagedObject.h>
#include <quorl/values/VValueCreator.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VValueBase>;
} // namespace Tolmen

namespace Quorl
{

VValueBase::VValueBase() = default;
VValueBase::VValueBase(const VValueBase& other) : Tolmen::ReferenceBase<VValueBase>(other) {}
VValueBase::~VValueBase() = default;

bool VValueBase::setSource(const WeakPtr<VManagedObject>& /*source*/)
{
    return false;
}

RefPtr<Tolmen::InterfaceBase> VValueBase::getInterface() const
{
    return {};
}

bool VValueBase::setContainerValue(const WeakPtr<VValueBase>& /*container*/)
{
    return false;
}

bool VValueBase::setInterface(const RefPtr<Tolmen::InterfaceBase>& /*interface*/)
{
    return false;
}

RefPtr<VValueBase> VValueBase::component(const string& name) const
{
    if (name.empty()) return RefPtr<VValueBase>(self);
    const RefPtr<VValueBase> found = components.getValue(name);
    if (!found || !found->setContainerValue(this)) return {};
    return found;
}

const Ageable& VValueBase::Undefined()
{
    static const Ageable atFirstUse;
    return atFirstUse;
}

} // namespace Quorl
