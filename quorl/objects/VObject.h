#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Counter.h>
#include <quorl/foundation/Rare.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/Watched.h>
#include <quorl/foundation/mutex.h>
#include <quorl/modules/VSaveable.h>
#include <quorl/objects/RequestExecutor.h>
#include <quorl/objects/VRequest.h>
#include <quorl/objects/VStateCreatorBase.h>
#include <quorl/objects/VTraceRequestID.h>
#include <quorl/registry/VCreationPreferences.h>
#include <quorl/registry/VManagedDomainObject.h>
#include <quorl/services/VScriptable.h>
#include <quorl/slots/VConnectable.h>
#include <quorl/slots/VInputClassRecognition.h>

#include <atomic>
#include <concepts>
#include <cstdint>
#include <functional>
#include <list>
#include <set>
#include <typeinfo>
#include <utility>

namespace Quorl
{

class KeptPlans;
class RequestPlans;
class WalkGraph;

/// The unit of the network: a managed, named object with inputs and outputs, which keeps a state
/// for each context and is brought up to date by requests.
///
/// A request walks upstream, depth first: the object asks the objects behind its inputs, then
/// decides by ages whether it has to run. After a successful update it is exactly as young as the
/// newest of what it was made from, so that the same request a second time runs nothing. Nothing is
/// pushed: a changed object stays stale until it is asked.
///
/// The registry owns each object from its construction to `remove`. It is no input to anybody
/// before `enableRequestProcessing`.
///
/// Threads: the walk takes no lock and lets one evaluation at a time into an object; the object's
/// mutex is held during its update functions and `update` alone.
class QUORL_API VObject : public virtual VManagedObjectBase,
                          public virtual VConnectable,
                          public virtual VStateCreatorBase,
                          public virtual VSaveable,
                          public VManagedDomainObject<VObject>,
                          public VScriptable,
                          public VInputClassRecognition,
                          public VTraceRequestID,
                          public Tolmen::mutex
{
public:
    using UpdateFunction = bool (*)(VObject*, VRequest&, double);

    /// Thrown by an update to end its run. The text goes to standard error.
    ///
    /// | status | the request answers                                                  |
    /// |--------|----------------------------------------------------------------------|
    /// | 0 to 4 | true; the age stands, so that it is tried again                      |
    /// | 5      | false                                                                |
    /// | others | false, and says so at a verbosity of more than 10                    |
    class QUORL_API ExecutionStatus
    {
    public:
        static constexpr std::uint32_t LastModified = 4; ///< up to this one: modified
        static constexpr std::uint32_t Failed = 5;

        ExecutionStatus(unsigned statusNumber, const string& message);
        ~ExecutionStatus();

        std::uint32_t status;
        string text;
    };

    /// What `help` tells; any other number is the plain description.
    enum HelpType : int
    {
        HelpPlain = 0,
        HelpURL = 1,
        HelpOrigin = 2,
        HelpRichName = 4,
    };

    /// Visits outputs, or inputs, of other objects; true goes on.
    class QUORL_API OutputObjectIterator
    {
    public:
        virtual ~OutputObjectIterator();
        virtual bool apply(const RefPtr<VObject>& object, const std::type_info& type,
                           const RefPtr<VSlot>& slot) = 0;
    };

    using ObjectAndSlot = std::pair<RefPtr<VObject>, RefPtr<VSlot>>;

    /// Enters the object in the registry, which may change its name to a free one.
    VObject(const string& name, int priority, const RefPtr<VCreationPreferences>& preferences);
    ~VObject() override;

    using VConnectable::attach;
    using VManagedObject::iterate;
    using VScriptable::iterate;

    // Being brought up to date

    /// Evaluates the network upstream of this object in the request's context, then this object.
    /// \param precision for this object's own update; inputs are asked with 1.0.
    /// \param caller not used.
    /// \param origin where the evaluation started; handed on.
    /// \return whether the object counts as modified for the one who asked: after a good update,
    /// and where another evaluation, or this one, is inside it already. False if nothing had to be
    /// done, if the update failed, and if the request was cancelled.
    /// \throws VObjectIsOutOfMemory, and whatever an update throws. An object that an exception
    /// passes on its walk stays occupied until `removeRequest` is called.
    virtual bool request(VRequest& request, double precision, const WeakVObjectPtr& caller,
                         const WeakVObjectPtr& origin);

    /// Starts an evaluation at this object.
    bool init_request(VRequest& request, double precision);

    /// What the object does when it runs. \return whether it succeeded; the default does nothing
    /// and does.
    virtual bool update(VRequest& request, double precision);

    /// Demands an update when no age does. Not called when one does.
    virtual bool must_update(const VRequest& request, double precision) const;

    /// The part of an update that runs without the object's lock, ahead of the rest: slow work that
    /// must not block others. \return whether to go on.
    virtual bool unsychronized_update(VRequest& request, double precision);

    /// Whether requests look at an input: one that shows something, and is not ignored.
    bool takesPart(const RefPtr<VSlot>& input) const;

    /// Runs the update, in the order `unsychronized_update`, update functions, `update`, of which
    /// the first to fail ends it. \return whether all succeeded.
    bool perform_update(VRequest& request, double precision);

    /// Adds a function that runs ahead of `update`, once, in the order of addresses. To be done
    /// before requests run.
    void insertUpdateFunction(UpdateFunction function);

    void enableRequestProcessing();  ///< from now on downstream objects ask this one
    void disableRequestProcessing(); ///< and no more; a direct request still works

    /// Has `VScheduler` run this object, in its coming `execute`. \return whether in that one; see
    /// `VScheduler::schedule`.
    bool schedule(double precision, const RefPtr<ValuePool>& pool);

    // What it is

    virtual const char* gimp_icon() const; ///< null by default; owned by the class
    virtual const char* xpm_icon() const;  ///< null by default; owned by the class

    /// A description for people: HTML, except for the plain one and the address.
    virtual string help(HelpType type) const;

    /// A copy of the object; null, the default, if it cannot be copied.
    virtual RefPtr<VObject> copy() const;

    virtual string type_key() const; ///< the readable name of the dynamic type

    /// The full name of a parameter of this object.
    virtual string CreateParameterName(const string& parameterName) const;

    string BaseName() const; ///< the name without what was added to make it unique
    static string BaseName(const string& objectName);

    /// Deliberate: both are empty. Children are named by their creators.
    string createChildname(const string& childName) const;
    string makeChildname(const VCreatorBase& creator, const string& childName) const;

    void setCreator(const WeakPtr<VCreatorBase>& creator);
    string CreatorName() const; ///< empty if the creator is gone

    /// Tells the observers of the action channel, then leaves the registry. The object lives on
    /// until its last owner goes.
    void remove();

    /// Removes the object of that name, then tells the observers. Prints a warning each time.
    /// \return whether there was one.
    static bool remove(const string& name);

    // What is around it. The walks over the registry are linear in the number of objects.

    /// Shows all outputs of a type, of all objects in the registry, by priority.
    /// \return the number of outputs shown, the one that ended the walk included.
    static int findOutputObjects(const std::type_info& type, OutputObjectIterator& visitor);

    /// The output parameter of that type which some object of the registry has, the first of them
    /// by priority.
    /// \param preferences not used.
    /// \param unique whether several candidates are as good as none.
    static RefPtr<VParameter>
    findUniqueOutputObject(const std::type_info& type,
                           const RefPtr<VCreationPreferences>& preferences, bool unique);

    /// Visits the objects behind the inputs up to a level, once for each input, with the input's
    /// type and slot.
    void iterateParents(VObjectIterator& visitor, int maxExpertLevel) const;

    /// Visits the objects of the registry with an input that shows an output of this object, except
    /// itself, with the output's type and the first such input.
    /// \return the number of outputs that were looked at, not of visits.
    int iterateChildren(OutputObjectIterator& visitor) const;

    // Making what comes upstream of it

    /// Has a creator make an object for an input, and attaches its first output of that type.
    /// `context` is told the slot (`VActionNotifier::CreationSource`).
    /// \return the new object, also if it could not be attached; null if there is none, and for a
    /// null slot or a dead creator.
    RefPtr<VObject> createInput(const WeakPtr<VCreatorBase>& creator, const RefPtr<VSlot>& slot,
                                const string& name, Tolmen::Intercube& context);

    /// Behind a successful `createInput`; does nothing.
    /// \param slotParameter what the slot showed before.
    virtual void InputCreation(const RefPtr<VParameter>& slotParameter,
                               const RefPtr<VObject>& newObject,
                               const RefPtr<VParameter>& newParameter);

    /// The same with the creator that scores best for the input's type; `context` is told the
    /// preferences.
    /// \return an `AttachErrorCode`; -1 also for an empty slot, and if nothing could be made.
    int attachNewObject(const RefPtr<VSlot>& slot, const string& name,
                        const Tolmen::Intercube& context,
                        const RefPtr<VCreationPreferences>& preferences);

    /// Makes an object of its own, called `name` and the slot's name, that shows what an input
    /// shows, and provides it unless another object does, which is said on standard output. This
    /// object stays as it is.
    /// \return null if the slot shows nothing.
    RefPtr<VObject> extractSlot(const RefPtr<VSlot>& slot, const Tolmen::Intercube& context,
                                const string& name) const;

    // Making what comes downstream of it

    /// Connects an output of this object, or else the interface of `info`, to an input of a child.
    /// The child is initialised with that slot.
    /// \return the child and the slot; an empty pair if it did not work. Then the subscribers of
    /// the action channel are warned of a child that refuses; that there is nothing to connect is
    /// said on standard output.
    ObjectAndSlot connectChild(const RefPtr<VObject>& child, const RefPtr<VAcceptInfo>& info);
    ObjectAndSlot connectAsChild(const RefPtr<VObject>& child, const VAcception& acception);

    /// Has a creator make a child in the way that it accepted, and connects it. A child that
    /// refuses the connection stays in the registry.
    ObjectAndSlot createChild(const VAcception& acception, const Tolmen::Intercube& context);

    std::list<VAcception> accept(const RefPtr<VObject>& candidate) const; ///< Deliberate: empty.

    static string HelpServer; ///< the address of the help server, without a slash at its end
    static std::int32_t
        VERBOSE_REQUEST; ///< how much requests tell on standard output; 0 is nothing

    Tolmen::Watched<bool> RequestProcessing = false;
    WeakPtr<VCreatorBase> Creator; ///< what made this object; may be null
    RequestExecutor Executor;      ///< the depth in the evaluation that passed last
    Tolmen::Rare<std::set<UpdateFunction, std::less<UpdateFunction>>> UpdateFunctions;
    Tolmen::Counter UpdateCounter;  ///< updates in progress
    Tolmen::Counter RequestCounter; ///< requests in progress
    RefPtr<VCreationPreferences> CreationPreferences;
    string UserInfo; ///< who made this object; not read in the kernel

private:
    friend class RequestPlans;
    friend class WalkGraph;

    std::atomic<std::uint32_t> place_{0};    // in the graph of a walk that it entered last
    std::atomic<KeptPlans*> plans_{nullptr}; // owned
};

extern template class VManagedDomainObject<VObject>;

/// `a >= b`: a takes its input from b, in the way that a's creator accepts first.
/// \return `child` and its input; an empty pair if either is dead, the creator of `child` is gone
/// or accepts nothing of `parent`, or the connection did not work.
QUORL_API VObject::ObjectAndSlot operator>=(const RefPtr<VObject>& child,
                                            const RefPtr<VObject>& parent);

/// The same for handles of derived types.
template <std::derived_from<VObject> Child, std::derived_from<VObject> Parent>
VObject::ObjectAndSlot operator>=(const RefPtr<Child>& child, const RefPtr<Parent>& parent)
{
    return RefPtr<VObject>(child) >= RefPtr<VObject>(parent);
}

/// Visits the objects upstream of another, with the input that takes something from them; true goes
/// on.
class QUORL_API VObjectIterator
{
public:
    virtual ~VObjectIterator();
    virtual bool apply(const RefPtr<VObject>& object, const std::type_info& type,
                       const RefPtr<VSlot>& slot) = 0;
};

} // namespace Quorl
