#include <quorl/slots/VInputBase.h>

#include <quorl/registry/VCreationPreferences.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VParameter.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValueMap.h>
#include <quorl/values/ValuePool.h>

#include <cstdio>

namespace Quorl
{

VInputBase::VInputBase(const WeakPtr<VParameter>& initialOwner)
{
    setOwner(initialOwner);
}

VInputBase::~VInputBase() = default;

void VInputBase::setOwner(const WeakPtr<VParameter>& newOwner)
{
    owner = newOwner;
    if (owner && owner->preferences && owner->preferences->contains("local")) owner->Localize();
}

bool VInputBase::activateNotification() const
{
    if (!owner) return false;
    if (!self.referer || !self.referer->isOwned())
        std::printf("\n\nbool VInputBase::activateNotification() called from object without strong "
                    "references!! Don't do this!\n\n");
    return owner->addNotifier(WeakPtr<ValueNotifier>(this));
}

void VInputBase::notify(const ValueNotifierList* caller, const WeakPtr<ValuePool>& pool) const
{
    // Asked for 0, not for being dead: an input in its destructor is nobody's business any more.
    const bool isUnowned = self.referer && self.referer->isUnowned();
    if (isUnowned) VActionNotifier::Warning("VInput has no strong references!");
    std::puts("void VInputBase::notify()");
    if (!owner) return;
    std::puts("void VInputBase::notify() --> broadcasting...");
    if (isUnowned) std::puts("me is not strongly referenced!?");
    // An observer may drop the parameter, which lasts until all have been told.
    const WeakPtr<VParameter> target = owner;
    const RefPtr<VParameter> held = Tolmen::heldIfOwned(target);
    target->notify(target->defaultValue, pool, WeakPtr<ValueNotifier>(this), caller,
                   target->properties.get());
}

} // namespace Quorl
