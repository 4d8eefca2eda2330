#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Counter.h>
#include <quorl/foundation/RefPtr.h>
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

#include <cstdint>
#include <functional>
#include <set>

namespace Quorl
{

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
    /// | status | the request answers                                   |
    /// |--------|-------------------------------------------------------|
    /// | 0 to 4 | true; the age stands, so that it is tried again       |
    /// | others | false                                                 |
    class QUORL_API ExecutionStatus
    {
    public:
        ExecutionStatus(unsigned statusNumber, const string& message);
        ~ExecutionStatus();

        std::uint32_t status;
        string text;
    };

    /// Enters the object in the registry, which may change its name to a free one.
    VObject(const string& name, int priority, const RefPtr<VCreationPreferences>& preferences);
    ~VObject() override;

    using VConnectable::attach;

    /// The full name of a parameter of this object.
    virtual string CreateParameterName(const string& parameterName) const;

    /// Tells the observers of the action channel, then leaves the registry. The object lives on
    /// until its last owner goes.
    void remove();

    /// Removes the object of that name, then tells the observers. Prints a warning each time.
    /// \return whether there was one.
    static bool remove(const string& name);

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

    /// Runs the update, in the order `unsychronized_update`, update functions, `update`, of which
    /// the first to fail ends it. \return whether all succeeded.
    bool perform_update(VRequest& request, double precision);

    /// Adds a function that runs ahead of `update`, once, in the order of addresses. To be done
    /// before requests run.
    void insertUpdateFunction(UpdateFunction function);

    void enableRequestProcessing();  ///< from now on downstream objects ask this one
    void disableRequestProcessing(); ///< and no more; a direct request still works

    /// Makes and attaches an upstream object for an input of this object.
    /// \return null if there is none.
    RefPtr<VObject> createInput(const WeakPtr<VInputCreatorBase>& creator,
                                const RefPtr<VSlot>& slot, const string& name,
                                Tolmen::Intercube& context);

    static std::int32_t
        VERBOSE_REQUEST; ///< how much requests tell on standard output; 0 is nothing

    bool RequestProcessing = false;
    WeakPtr<VCreatorBase> Creator; ///< what made this object; may be null
    RequestExecutor Executor;      ///< the depth in the evaluation that passed last
    std::set<UpdateFunction, std::less<UpdateFunction>> UpdateFunctions;
    Tolmen::Counter UpdateCounter;  ///< updates in progress
    Tolmen::Counter RequestCounter; ///< requests in progress
    RefPtr<VCreationPreferences> CreationPreferences;
    string UserInfo; ///< who made this object; not read in the kernel
};

extern template class VManagedDomainObject<VObject>;

} // namespace Quorl
