#include <quorl/objects/VStateCreatorBase.h>

#include <quorl/foundation/SteadyWalk.h>
#include <quorl/foundation/Watch.h>
#include <quorl/values/ValuePool.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VStateCreatorBase::State>;
} // namespace Tolmen

namespace Quorl
{

VStateCreatorBase::State::State() : Ageable(0) {}
VStateCreatorBase::State::~State() = default;

VStateCreatorBase::VStateCreatorBase() : states_(new States) {}
VStateCreatorBase::~VStateCreatorBase() = default;

RefPtr<VStateCreatorBase::State> VStateCreatorBase::newState() const
{
    return RefPtr<State>(new State);
}

RefPtr<VStateCreatorBase::State>& VStateCreatorBase::getState(const WeakPtr<ValuePool>& pool) const
{
    Tolmen::Watch::written(states_.get());
    return (*states_)[pool];
}

const RefPtr<VStateCreatorBase::State>&
VStateCreatorBase::stateIn(const WeakPtr<ValuePool>& pool) const
{
    return (*states_)[pool];
}

RefPtr<VStateCreatorBase::State> VStateCreatorBase::myState(const WeakPtr<ValuePool>& pool) const
{
    if (!getState(pool))
    {
        const RefPtr<State> made = newState(); // before the entry is sought: it may enter others
        getState(pool) = made;
    }
    return getState(pool);
}

void VStateCreatorBase::setState(const WeakPtr<ValuePool>& pool, const RefPtr<State>& state) const
{
    getState(pool) = state;
}

void VStateCreatorBase::removeState(const WeakPtr<ValuePool>& pool) const
{
    const Tolmen::Watch::ShapeChange change;
    states_->erase(pool);
}

RefPtr<Tolmen::InterfaceBase> VStateCreatorBase::hasLocalInterface(const std::type_info& type) const
{
    RefPtr<Tolmen::InterfaceBase> found;
    Tolmen::walkSteadily(*states_, [&](const auto& /*pool*/, const RefPtr<State>& state) {
        if (state) found = state->getInterface(type);
        return !found;
    });
    return found;
}

} // namespace Quorl
