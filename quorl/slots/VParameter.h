#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/Rare.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/Watched.h>
#include <quorl/values/ValueNotifierList.h>

#include <list>
#include <map>
#include <memory>
#include <typeinfo>

namespace Quorl
{

/// A typed, named quantity that an object offers, shared by all that is connected to it.
///
/// It owns one default value. A global parameter has that value everywhere; a local one has a
/// variable in each pool, made when it is first read there, as a copy of the default.
///
/// An age moves by a touch alone, and a touch compares nothing: setting an equal value makes it
/// younger. Where a value is set and told, observers run first and see the new datum with the old
/// age.
///
/// Threads: the one that edits the network. No lock.
class QUORL_API VParameter : public ValueNotifierList, public Tolmen::Intercube
{
public:
    /// Visits the users of a parameter; true goes on.
    class QUORL_API UserIterator
    {
    public:
        virtual ~UserIterator();
        virtual bool apply(const WeakPtr<VManagedObject>& user, const string& text) = 0;
    };

    /// Without a default value, the type of the parameter is `void`.
    VParameter();
    VParameter(const RefPtr<VValueBase>& defaultValue, const string& name,
               const RefPtr<VCreationPreferences>& preferences);

    /// Leaves the parameter's variables in their pools.
    ~VParameter() override;

    const RefPtr<VValueBase>& DefaultValue() const override;

    /// A parameter of the same kind with a value of its own; null if there is none.
    virtual RefPtr<VParameter> copy() const = 0;

    /// Makes the parameter's variable in a pool. \pre `pool` is alive.
    virtual RefPtr<VValueBase> createLocalVariable(const RefPtr<ValuePool>& pool) const = 0;

    /// Gives the default value, or the member of it, the datum of `value`; ages stand.
    virtual bool setGlobalValue(const RefPtr<VValueBase>& value, const string& member) const = 0;

    /// A new value with the datum of the default value.
    virtual RefPtr<VValueBase> newValue() const = 0;

    // What it is and whose

    /// With the owner's name if that is a managed object: "owner.name", or as a `VObject` decides.
    string Name() const;
    void setName(const string& newName) { name = newName; }
    void setCreator(const WeakPtr<VSlotContainer>& newCreator);
    void setCreator(VSlotContainer* newCreator);
    void setSource(const WeakPtr<VSlotContainer>& newSource);
    const std::type_info& getType() const; ///< of the default value; void without one
    const std::type_info& getType(const string& member) const;

    bool isLocal() const { return local; }
    void Localize(); ///< from now on each pool has its own value

    /// Drops the values of all pools; the default value stands, and observers are told. The local
    /// value of `pool` is not carried over: the parameter is global before that is looked at.
    void Globalize(const RefPtr<ValuePool>& pool);

    // Reading

    /// The value in a pool: of a local parameter its variable, made if needed, or its member;
    /// otherwise, and where there is none, the whole default value, whatever the member.
    RefPtr<VValueBase> getValue(const RefPtr<ValuePool>& pool, const string& member) const;

    /// The variable in a pool, or its member. Null for a dead pool, and where there is none unless
    /// `create`.
    RefPtr<VValueBase> getLocalValue(const RefPtr<ValuePool>& pool, const string& member,
                                     bool create) const;

    /// Empty if there is no value.
    string getValueAsText(const RefPtr<ValuePool>& pool, const string& member, bool create);

    /// The age of the value in a pool. Never makes a variable.
    const Ageable& age(const RefPtr<ValuePool>& pool) const;

    // Changing

    /// Makes the value in a pool younger than all that is; the default value if there is no
    /// variable.
    void touchValue(const RefPtr<ValuePool>& pool) const;

    /// Sets the value in a pool from a text, tells the observers, then touches the value.
    /// \param member for a local parameter, what of the value is set.
    /// \param create makes a local parameter's variable; without it the default value is set where
    /// there is none.
    /// \param skip, caller, changes see `ValueNotifierList::notify`.
    /// \return false if there is no value, which is said on standard output, or if it refuses the
    /// text. Nobody is told then, and no age moves.
    bool setValueFromText(const string& text, const RefPtr<ValuePool>& pool, const string& member,
                          bool create, const WeakPtr<ValueNotifier>& skip,
                          const ValueNotifierList* caller, const ValueMap* changes) const;

    /// For a value that was set by other means: tells the observers, tells the subscribers of the
    /// action channel, then touches the value.
    void notifyValueChange(const RefPtr<VValueBase>& value, const RefPtr<ValuePool>& pool,
                           const string& member, const WeakPtr<ValueNotifier>& skip,
                           const ValueNotifierList* caller, const ValueMap* changes) const;

    /// Tells the subscribers of the action channel that a parameter has changed.
    static void NotifyActionChangeParameter(const WeakPtr<ValueNotifierList>& parameter,
                                            const RefPtr<ValuePool>& pool,
                                            const WeakPtr<VValueBase>& value, const string& member);

    // Properties: what the parameter says of itself, such as its range. They are told together with
    // the default value.

    /// Tells the observers the properties; nothing if there are none.
    void sendNotification(const WeakPtr<ValueNotifier>& skip, const ValueNotifierList* caller,
                          const WeakPtr<ValuePool>& pool);
    void setProperty(const string& propertyName, const RefPtr<VValueBase>& value,
                     const WeakPtr<ValueNotifier>& skip, const ValueNotifierList* caller,
                     const WeakPtr<ValuePool>& pool);

    /// Sets all of `changed`; the values are shared. Prints two lines on standard output.
    void updateProperties(const ValueMap& changed, const WeakPtr<ValueNotifier>& skip,
                          const ValueNotifierList* caller);

    // Followers

    /// Subscribes an action and owns it.
    void AddAction(const RefPtr<ValueActionBase>& action);

    /// As the list's, and names its stack after the parameter.
    void AddUndoAction(const RefPtr<VUndoAction>& action, int size);

    void includeUser(const WeakPtr<VManagedObject>& user, const string& text);

    /// Deliberate: does nothing. Users are never removed, nor visited.
    void removeUser(const WeakPtr<VManagedObject>& user, const string& text);
    int iterateUsers(UserIterator& visitor) const; ///< \return 0

    /// The number of live constraints that refuse `other`; 0 means that it may be connected here.
    int ConnectibilityMismatch(const VParameter& other) const;

    WeakPtr<VSlotContainer> creator; ///< the object that made it
    RefPtr<VCreationPreferences> preferences;
    Tolmen::Watched<RefPtr<VValueBase>>
        defaultValue;                     ///< the global value, and the prototype of local ones
    string name;                          ///< the bare name
    std::unique_ptr<ValueMap> properties; ///< null until the first is set
    Tolmen::Watched<WeakPtr<VSlotContainer>> source; ///< the object that provides it
    Tolmen::Watched<bool> local = false;
    Tolmen::Rare<std::list<RefPtr<ValueActionBase>>>
        actions; ///< keeps them alive; the observers' list does not
    Tolmen::Rare<std::multimap<WeakPtr<VManagedObject>, string>> users;
    Tolmen::Rare<std::list<RefPtr<VParameterConnectionConstraint>>> constraints;
    int Reserved = 0; ///< for modules

private:
    /// The value that an edit means: a local variable if there is or may be one, else the default.
    RefPtr<VValueBase> editedValue(const RefPtr<ValuePool>& pool, const string& member,
                                   bool create) const;
    template <class Tell>
    void tellAndTouch(RefPtr<ValuePool> pool, Tell&& tell) const;
    ValueMap& ensuredProperties();
    void notifyOfProperties(const WeakPtr<ValueNotifier>& skip, const ValueNotifierList* caller,
                            const WeakPtr<ValuePool>& pool) const;
};

} // namespace Quorl
