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

VStateCreatorBase::VStateCreatorBase() = default;
VStateCreatorBase::~VStateCreatorBase() = default;

VStateCreatorBase::States& VStateCreatorBase::states() const
{
    if (!states_) states_ = std::make_unique<States>();
    return *states_;
}

RefPtr<VStateCreatorBase::State> VStateCreatorBase::newState() const
{
    return RefPtr<State>(new State);
}

RefPtr<VStateCreatorBase::State>& VStateCreatorBase::getState(const WeakPtr<ValuePool>& pool) const
{
    Tolmen::Watch::variablesChange(watchedStates());
    areStatesLent_ = true;
    return states()[pool];
}

const RefPtr<VStateCreatorBase::State>&
VStateCreatorBase::stateIn(const WeakPtr<ValuePool>& pool) const
{
    static const RefPtr<State> none;
    if (!states_) return none;
    const auto entry = states_->find(pool);
    return entry == states_->end() ? none : entry->second;
}

RefPtr<VStateCreatorBase::State> VStateCreatorBase::myState(const WeakPtr<ValuePool>& pool) const
{
    if (!stateIn(pool)) setState(pool, newState());
    return stateIn(pool);
}

void VStateCreatorBase::setState(const WeakPtr<ValuePool>& pool, const RefPtr<State>& state) const
{
    Tolmen::Watch::variablesChange(watchedStates());
    states()[pool] = state;
    Tolmen::Watch::variablesChange(
        watchedStates()); // what the former one's end has looked at is void
}

void VStateCreatorBase::removeState(const WeakPtr<ValuePool>& pool) const
{
    Tolmen::Watch::variablesChange(watchedStates());
    if (states_) states_->erase(pool);
    Tolmen::Watch::variablesChange(watchedStates());
}

RefPtr<Tolmen::InterfaceBase> VStateCreatorBase::hasLocalInterface(const std::type_info& type) const
{
    RefPtr<Tolmen::InterfaceBase> found;
    if (!states_) return found;
    Tolmen::walkSteadily(*states_, [&](const auto& /*pool*/, const RefPtr<State>& state) {
        if (state) found = state->getInterface(type);
        return !found;
    });
    return found;
}

} // namespace Quorl
