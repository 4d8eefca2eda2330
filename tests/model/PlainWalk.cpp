#include <tests/model/PlainWalk.h>

#include <quorl/foundation/Profiler.h>
#include <quorl/objects/RequestTrace.h>
#include <quorl/objects/VObjectIsOutOfMemory.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/ValuePool.h>

#include <mutex>

namespace QuorlTest
{

using Quorl::Ageable;
using Quorl::RefPtr;
using Quorl::RequestTrace;
using Quorl::VObject;
using Quorl::VObjectIsOutOfMemory;
using Quorl::VParameter;
using Quorl::VRequest;
using Quorl::VSlot;
using Quorl::VStateCreatorBase;
using Quorl::WeakVObjectPtr;
using std::string;

namespace
{

constexpr double kPrecisionOfInputs = 1.0; // an object's own precision is no business of its inputs

/// The walk of one request over the inputs of one object, and what it finds: whether some input
/// demands an update, why, and the youngest age that was met.
class ParentIterator final : public Quorl::VSlotIterator
{
public:
    ParentIterator(VObject& object, VRequest& request, const Ageable& age,
                   const WeakVObjectPtr& origin, const RequestTrace& trace)
        : newestInput(age), object_(object), request_(request), age_(age), self_(&object),
          origin_(origin), trace_(trace)
    {
    }

    bool apply(const RefPtr<VSlot>& slot, int expertLevel) override;

    void demandUpdate(const string& why)
    {
        isActionDemanded = true;
        reason = why; // the last writer wins; it only serves the logs
    }

    bool isActionDemanded = false;
    string reason;
    Ageable newestInput;

private:
    bool takesPart(const RefPtr<VSlot>& slot) const;
    void considerInput(const VSlot& slot);
    void considerPureInput(const VSlot& slot, const Ageable& parameterAge);
    bool isToBeAsked(const VObject& source) const;
    void askSource(const VSlot& slot, const VParameter& parameter, VObject& source);

    VObject& object_;
    VRequest& request_;
    const Ageable& age_; // the object's age in the context: live, not a copy
    const WeakVObjectPtr self_;
    const WeakVObjectPtr origin_;
    const RequestTrace& trace_;
};

bool ParentIterator::apply(const RefPtr<VSlot>& slot, int /*expertLevel*/)
{
    trace_.input(*slot);
    if (request_.isCancelled()) return false;
    if (takesPart(slot)) considerInput(*slot);
    return true;
}

bool ParentIterator::takesPart(const RefPtr<VSlot>& slot) const
{
    return slot->Parameter && !object_.checkIfIgnoredInputClass(slot->InputClass) &&
           !object_.ignoreInput(slot);
}

void ParentIterator::considerInput(const VSlot& slot)
{
    const RefPtr<VParameter> parameter = slot.Parameter; // an update may attach another meanwhile
    const Ageable parameterAge = parameter->age(request_.Pool);
    if (parameterAge > age_)
    {
        trace_.inputIsNewer(slot, parameterAge);
        demandUpdate("Input " + slot.Name + " is newer");
        Tolmen::raiseAge(newestInput, parameterAge);
    }
    trace_.inputAge(slot, parameterAge, newestInput);

    const RefPtr<VObject> source = parameter->source;
    if (!source) return considerPureInput(slot, parameterAge);
    trace_.sourceIsOlderThanInput(slot, parameterAge, *source);
    if (isToBeAsked(*source)) askSource(slot, *parameter, *source);
}

void ParentIterator::considerPureInput(const VSlot& slot, const Ageable& parameterAge)
{
    trace_.inputHasNoObject();
    if (!(parameterAge > age_)) return;
    demandUpdate("Pure Input " + slot.Name + " is newer");
    trace_.pureInputIsNewer(slot, parameterAge);
    Tolmen::raiseAge(newestInput, parameterAge);
}

/// An object that is not ready is passed over; one that this evaluation is walking already closes a
/// cycle, which is cut here.
bool ParentIterator::isToBeAsked(const VObject& source) const
{
    if (!source.RequestProcessing)
    {
        trace_.sourceIsNotReady(source);
        return false;
    }
    if (source.hasRequest(request_))
    {
        trace_.cycleStopped(source);
        return false;
    }
    return true;
}

void ParentIterator::askSource(const VSlot& slot, const VParameter& parameter, VObject& source)
{
    request_.Id->considerLevel(object_.Executor.Level + 1, source.ID, object_.ID);
    source.Executor = object_.Executor;
    if (source.request(request_, kPrecisionOfInputs, self_, origin_))
    {
        const Ageable& parameterAge = parameter.age(request_.Pool);
        Tolmen::raiseAge(newestInput, parameterAge);
        trace_.sourceWasModified(source, parameterAge, newestInput);
        demandUpdate("Input Object " + source.getName() +
                     "->request() returned true, it provides input param " + slot.Name);
    }

    const Ageable& sourceAge = source.age(request_.Pool);
    if (sourceAge > age_)
    {
        Tolmen::raiseAge(newestInput, sourceAge);
        trace_.sourceIsNewer(slot, sourceAge);
        demandUpdate("Input " + slot.Name + " is newer");
    }
    else
        trace_.sourceIsConstant(source, sourceAge);
}

void noteNewestConnection(const VObject& object, VRequest& request)
{
    if (!(request.NewestConnection < object.ConnectionAge())) return;
    request.NewestConnection = object.ConnectionAge();
    request.NewestConnectionObject = object.ID;
}

/// A state that was modified, but before the object last ran, demands an update; one that was never
/// modified does not.
void considerState(const VObject& object, const VRequest& request, const Ageable& age,
                   ParentIterator& inputs, const RequestTrace& trace)
{
    const RefPtr<VStateCreatorBase::State> state = object.getState(request.Pool);
    if (!state || *state < Ageable(1) || !(*state < age)) return;
    inputs.demandUpdate("Object local state is old, object needs to update");
    trace.stateIsOld(*state);
}

/// A new connection counts even if every input is old. Judged by the ages of before the walk, so
/// that what an update upstream connects meanwhile is left to the next request.
void considerConnections(const VObject& object, const Ageable& ageBefore,
                         const Ageable& connectionBefore, ParentIterator& inputs)
{
    if (!(ageBefore < connectionBefore)) return;
    Tolmen::raiseAge(inputs.newestInput, object.ConnectionAge());
    inputs.demandUpdate("Connections/Parameters have changed");
}

/// What the one who asked is told after an update ended itself.
bool answerTo(const VObject::ExecutionStatus& status, const RequestTrace& trace)
{
    trace.exception(status.text);
    if (status.status <= VObject::ExecutionStatus::LastModified) return true;
    if (status.status != VObject::ExecutionStatus::Failed) trace.notUpdated();
    return false;
}

bool performPlainly(VObject& object, VRequest& request, double precision)
{
    if (!object.unsychronized_update(request, precision)) return false;
    const std::lock_guard<const Tolmen::mutex> lock(object);
    for (const VObject::UpdateFunction function : object.UpdateFunctions)
        if (!function(&object, request, precision)) return false;
    return object.update(request, precision);
}

/// Runs the update. After a success the object is as young as the newest of its inputs, not as the
/// present: nothing is newer than it then.
bool runUpdate(VObject& object, VRequest& request, double precision, Ageable& age,
               const ParentIterator& inputs, const RequestTrace& trace)
{
    trace.updating(inputs.newestInput, inputs.isActionDemanded, inputs.reason);
    const Ageable ageAtUpdate = age;
    bool hasSucceeded = false;
    try
    {
        const Tolmen::CounterScope inProgress(object.UpdateCounter);
        hasSucceeded = performPlainly(object, request, precision);
    }
    catch (const Tolmen::Cache::OutOfMemory& reason)
    {
        throw VObjectIsOutOfMemory(reason, WeakVObjectPtr(&object));
    }
    catch (const VObject::ExecutionStatus& status)
    {
        return answerTo(status, trace);
    }
    if (!hasSucceeded)
    {
        trace.updateFailed(inputs.newestInput);
        return false;
    }
    Tolmen::raiseAge(age, inputs.newestInput);
    trace.updated(inputs.newestInput, ageAtUpdate);
    return true;
}

/// \return whether nobody else is inside.
bool enter(VObject& object, const VRequest& request)
{
    if (object.Current) return false;
    object.Previous = object.Latest;
    object.Latest = request.Id;
    object.Current = request.Id;
    return true;
}

void leave(VObject& object)
{
    object.Current = Quorl::WeakPtr<VRequest::ID>();
}

} // namespace

bool requestPlainly(VObject& object, VRequest& request, double precision,
                    const WeakVObjectPtr& /*caller*/, const WeakVObjectPtr& origin)
{
    const Tolmen::CounterScope inProgress(object.RequestCounter);
    const Tolmen::Profiler section(__FILE__, __LINE__, __PRETTY_FUNCTION__, object.getName(), 0);
    Ageable& myAge = object.age(request.Pool);
    const RequestTrace trace(object, request, myAge);
    trace.begin(precision);
    if (object.hasRequest(request))
    {
        trace.recursionStopped();
        return true; // Deliberate: the one who asked counts this object as modified.
    }

    const Ageable ageBefore = myAge;
    const Ageable connectionBefore = object.ConnectionAge();
    noteNewestConnection(object, request);

    ParentIterator inputs(object, request, myAge, origin, trace);
    if (!enter(object, request))
    {
        trace.occupied();
        return true; // Deliberate, as above.
    }
    {
        const RequestTrace::Indentor deeper;
        object.iterateParameters(VObject::kAllLevels, inputs);
    }
    leave(object); // Deliberate: not done if the walk throws.
    if (request.isCancelled()) return false;

    trace.walked(inputs.isActionDemanded);
    considerState(object, request, myAge, inputs, trace);
    trace.poolIsMissing();
    considerConnections(object, ageBefore, connectionBefore, inputs);
    object.taintFromRequest(request);
    if (!inputs.isActionDemanded && !object.must_update(request, precision))
    {
        trace.notUpdated();
        return false;
    }
    return runUpdate(object, request, precision, myAge, inputs, trace);
}

} // namespace QuorlTest
