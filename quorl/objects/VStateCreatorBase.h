#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/RefPtr.h>

#include <map>
#include <memory>
#include <typeinfo>

namespace Quorl
{

/// Keeps one state of an object for each context: what it wants to remember between two updates
/// cannot live in the object, which works in many contexts at once.
///
/// A state lasts as long as its object, or until it is removed. Threads: no lock.
class QUORL_API VStateCreatorBase
{
public:
    /// To be derived from, or to be given interfaces.
    ///
    /// Its age starts at 0, for "never modified". A state that was touched and is older than its
    /// object makes the object update at each request: what keeps a state touches it in its update.
    class QUORL_API State : public Tolmen::ReferenceBase<State>,
                            public Tolmen::Intercube,
                            public Ageable
    {
    public:
        State();
        ~State() override;
    };

    VStateCreatorBase();
    VStateCreatorBase(const VStateCreatorBase&) = delete;
    VStateCreatorBase& operator=(const VStateCreatorBase&) = delete;
    virtual ~VStateCreatorBase();

    /// Makes a state of the object's own kind; a plain one by default.
    virtual RefPtr<State> newState() const;

    /// The state in a context, null if there is none. Enters the context, and makes no state.
    RefPtr<State>& getState(const WeakPtr<ValuePool>& pool) const;

    /// The same, to be looked at and not to be replaced. Enters nothing.
    const RefPtr<State>& stateIn(const WeakPtr<ValuePool>& pool) const;

    /// The state in a context, made if needed. For the updates of objects.
    RefPtr<State> myState(const WeakPtr<ValuePool>& pool) const;

    void setState(const WeakPtr<ValuePool>& pool, const RefPtr<State>& state) const;
    void removeState(const WeakPtr<ValuePool>& pool) const;

    /// The first interface of that type among the live states, each of which may make it on demand.
    /// Null if there is none.
    RefPtr<Tolmen::InterfaceBase> hasLocalInterface(const std::type_info& type) const;

    /// Where a watch is told that a state may have been replaced.
    const void* watchedStates() const { return &states_; }

    /// Whether somebody has had a state to write to, and may replace it unseen.
    bool areStatesLent() const { return areStatesLent_; }

private:
    using States = std::map<WeakPtr<ValuePool>, RefPtr<State>>;

    States& states() const; // made if they are missing

    mutable bool areStatesLent_ = false;
    mutable std::unique_ptr<States> states_; // null until there is one, for most objects have none
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VStateCreatorBase::State>;
} // namespace Tolmen
