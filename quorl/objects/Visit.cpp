#include <quorl/objects/Visit.h>

#include <quorl/foundation/Cache.h>
#include <quorl/objects/OwnOperations.h>
#include <quorl/objects/VConnectionValidator.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VObjectIsOutOfMemory.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotContainer.h>
#include <quorl/values/ValuePool.h>

namespace Quorl
{
namespace
{

void noteNewestConnection(const VObject& object, VRequest& request)
{
    if (!(request.NewestConnection < object.ConnectionAge())) return;
    request.NewestConnection = object.ConnectionAge();
    request.NewestConnectionObject = object.ID;
}

/// What the one who asked is told after an update ended itself.
bool answerTo(const VObject::ExecutionStatus& status, const RequestTrace& trace)
{
    trace.exception(status.text);
    if (status.status <= VObject::ExecutionStatus::LastModified) return true;
    if (status.status != VObject::ExecutionStatus::Failed) trace.notUpdated();
    return false;
}

template <class T, class B>
bool isLast(const Tolmen::StrongPtr<T, B>& handle)
{
    return handle.referer && handle.referer->strong.load(std::memory_order_relaxed) == 1;
}

} // namespace

Visit::Visit(VObject& object, VRequest& request, double precision,
             const std::source_location& operation, const Finding& finding)
    : object_(object), request_(request), precision_(precision), inProgress_(object.RequestCounter),
      section_(operation.file_name(), static_cast<int>(operation.line()), operation.function_name(),
               object.getName(), 0),
      age_(object.age(request.Pool)), trace_(object, request, age_), finding_(finding)
{
}

Visit::~Visit() = default;

bool Visit::begin()
{
    trace_.begin(precision_);
    if (OwnOperations::hasHasRequest(object_)) finding_.noteForeignCode();
    if (object_.hasRequest(request_))
    {
        trace_.recursionStopped();
        return false;
    }
    ageBefore_ = age_;
    connectionBefore_ = object_.ConnectionAge();
    noteNewestConnection(object_, request_);
    newestInput_ = age_;
    if (object_.endsForeignIdentity()) finding_.noteForeignCode();
    if (!object_.enter(request_))
    {
        trace_.occupied();
        return false;
    }
    finding_.noteEntry();
    finding_.notePlace(&age_);
    finding_.notePlace(&object_.ConnectionAge());
    deeper_.emplace();
    inputs_.emplace(object_, VObject::kAllLevels);
    return true;
}

WeakVObjectPtr Visit::self() const
{
    return WeakVObjectPtr(&object_);
}

// The inputs

VObject* Visit::nextSource()
{
    while (inputs_->next())
    {
        const RefPtr<VSlot>& slot = inputs_->slot();
        trace_.input(*slot);
        if (request_.isCancelled()) break;
        if (!takesPart(slot)) continue;
        if (considerInput(*slot)) return &*source_;
        leaveInput();
    }
    inputs_.reset();
    return nullptr;
}

bool Visit::takesPart(const RefPtr<VSlot>& slot)
{
    if (OwnOperations::hasIgnoreInput(object_)) finding_.noteForeignCode();
    return object_.takesPart(slot);
}

/// \return whether the object that provides the input is to be asked.
bool Visit::considerInput(const VSlot& slot)
{
    parameter_ = slot.Parameter;
    const Ageable parameterAge = considerParameter(slot);
    source_ = parameter_->source;
    if (!source_)
    {
        considerPureInput(slot, parameterAge);
        return false;
    }
    trace_.sourceIsOlderThanInput(slot, parameterAge, *source_);
    return isToBeAsked(*source_);
}

/// \return the age at which it was looked at.
Ageable Visit::considerParameter(const VSlot& slot)
{
    const Ageable& ageNow = parameter_->age(request_.Pool);
    const Ageable parameterAge = ageNow;
    finding_.notePlace(&ageNow);
    if (parameter_->local) finding_.notePlace(parameter_->self.referer);
    if (parameterAge > age_)
    {
        trace_.inputIsNewer(slot, parameterAge);
        reason_.inputIsNewer(slot.Name);
        raiseAge(newestInput_, parameterAge);
    }
    trace_.inputAge(slot, parameterAge, newestInput_);
    return parameterAge;
}

void Visit::considerPureInput(const VSlot& slot, const Ageable& parameterAge)
{
    trace_.inputHasNoObject();
    if (!(parameterAge > age_)) return;
    reason_.pureInputIsNewer(slot.Name);
    trace_.pureInputIsNewer(slot, parameterAge);
    raiseAge(newestInput_, parameterAge);
}

/// An object that is not ready is passed over; one that this evaluation is walking already closes a
/// cycle, which is cut here.
bool Visit::isToBeAsked(const VObject& source)
{
    if (!source.RequestProcessing)
    {
        trace_.sourceIsNotReady(source);
        finding_.noteMoreToDo();
        return false;
    }
    if (OwnOperations::hasHasRequest(source)) finding_.noteForeignCode();
    if (source.hasRequest(request_))
    {
        trace_.cycleStopped(source);
        finding_.noteCycle(source);
        return false;
    }
    return true;
}

void Visit::hearAnswer(bool wasModified)
{
    const VSlot& slot = *inputs_->slot();
    finding_.noteAnswer(*source_);
    if (wasModified)
    {
        const Ageable& parameterAge = parameter_->age(request_.Pool);
        raiseAge(newestInput_, parameterAge);
        trace_.sourceWasModified(*source_, parameterAge, newestInput_);
        reason_.sourceWasModified(slot.Name, source_->getName());
    }

    const Ageable& sourceAge = source_->age(request_.Pool);
    if (sourceAge > age_)
    {
        raiseAge(newestInput_, sourceAge);
        trace_.sourceIsNewer(slot, sourceAge);
        reason_.inputIsNewer(slot.Name);
    }
    else
        trace_.sourceIsConstant(*source_, sourceAge);
    leaveInput();
}

void Visit::leaveInput()
{
    if (isLast(source_) || isLast(parameter_))
        finding_.noteForeignCode(); // what ends may do anything
    source_ = RefPtr<VObject>();
    parameter_ = RefPtr<VParameter>();
}

// The decision

bool Visit::conclude()
{
    deeper_.reset();
    object_.leave(); // Deliberate: not done if the walk throws.
    finding_.noteExit();
    if (request_.isCancelled()) return false;

    trace_.walked(static_cast<bool>(reason_));
    considerState();
    trace_.poolIsMissing();
    considerConnections();
    tellValidators();
    if (reason_ || mustUpdate()) return runUpdate();
    finding_.noteIdle();
    trace_.notUpdated();
    return false;
}

/// A state that was modified, but before the object last ran, demands an update; one that was never
/// modified does not.
void Visit::considerState()
{
    const RefPtr<VStateCreatorBase::State> state = object_.stateIn(request_.Pool);
    if (object_.areStatesLent()) finding_.noteUnwatched(); // who has one replaces it unseen
    finding_.notePlace(object_.watchedStates());
    if (state) finding_.notePlace(static_cast<const Ageable*>(&*state));
    if (!state || *state < Ageable(1) || !(*state < age_)) return;
    reason_.stateIsOld();
    trace_.stateIsOld(*state);
}

/// A new connection counts even if every input is old. Judged by the ages of before the walk, so
/// that what an update upstream connects meanwhile is left to the next request.
void Visit::considerConnections()
{
    if (!(ageBefore_ < connectionBefore_)) return;
    raiseAge(newestInput_, object_.ConnectionAge());
    reason_.connectionsHaveChanged();
}

/// Told once more, they hear nothing new as long as the request meets no newer connection.
void Visit::tellValidators()
{
    object_.taintFromRequest(request_);
    object_.showConnectionValidators(
        [&](const VConnectionValidator& validator) { finding_.noteTold(validator); });
}

bool Visit::mustUpdate()
{
    if (!OwnOperations::hasMustUpdate(object_)) return false;
    finding_.noteForeignCode();
    return object_.must_update(request_, precision_);
}

/// After a success the object is as young as the newest of its inputs, not as the present: nothing
/// is newer than it then.
bool Visit::runUpdate()
{
    finding_.noteForeignCode();
    if (VObject::VERBOSE_REQUEST != 0)
        trace_.updating(newestInput_, static_cast<bool>(reason_), reason_.text());
    const Ageable ageAtUpdate = age_;
    bool hasSucceeded = false;
    try
    {
        const Tolmen::CounterScope inProgress(object_.UpdateCounter);
        hasSucceeded = object_.perform_update(request_, precision_);
    }
    catch (const Tolmen::Cache::OutOfMemory& reason)
    {
        throw VObjectIsOutOfMemory(reason, WeakVObjectPtr(&object_));
    }
    catch (const VObject::ExecutionStatus& status)
    {
        return answerTo(status, trace_);
    }
    if (!hasSucceeded)
    {
        trace_.updateFailed(newestInput_);
        return false;
    }
    raiseAge(age_, newestInput_);
    trace_.updated(newestInput_, ageAtUpdate);
    return true;
}

} // namespace Quorl
