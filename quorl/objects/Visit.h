#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/Counter.h>
#include <quorl/foundation/Profiler.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/objects/Finding.h>
#include <quorl/objects/RequestTrace.h>
#include <quorl/objects/UpdateReason.h>
#include <quorl/slots/InputCursor.h>

#include <cstdint>
#include <optional>
#include <source_location>

namespace Quorl
{

/// One object's turn in a walk: whether it has to run, and the run.
///
///     begin, { nextSource, hearAnswer }, conclude
///
/// A visit asks one source after the other, without knowing how they are walked; then it decides by
/// ages. The object and the request must outlive it. What it holds it lets go of in the order in
/// which an exception would: the input first, then the object's counter.
class Visit
{
public:
    /// \param precision for the object's own update.
    /// \param operation what the profiler is told of.
    Visit(VObject& object, VRequest& request, double precision,
          const std::source_location& operation, const Finding& finding);
    ~Visit();
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    /// Enters the object. \return false if an evaluation is inside it already; whoever asked then
    /// counts the object as modified.
    bool begin();

    /// The next object that is to be asked, whose answer is to be told; null behind the last. It is
    /// kept until then.
    VObject* nextSource();
    void hearAnswer(bool wasModified);

    /// Decides, and runs the update. \return whether the object counts as modified.
    bool conclude();

    WeakVObjectPtr self() const;
    Repeats::Place place() const { return finding_.place(); }

private:
    bool takesPart(const RefPtr<VSlot>& slot);
    bool considerInput(const VSlot& slot);
    Ageable considerParameter(const VSlot& slot);
    void considerPureInput(const VSlot& slot, const Ageable& parameterAge);
    bool isToBeAsked(const VObject& source);
    void leaveInput();

    void considerState();
    void considerConnections();
    void tellValidators();
    bool mustUpdate();
    bool runUpdate();

    VObject& object_;
    VRequest& request_;
    const double precision_;
    const Tolmen::CounterScope inProgress_;
    const Tolmen::Profiler section_;
    Ageable& age_; // the object's age in the context: live, not a copy
    const RequestTrace trace_;
    Ageable ageBefore_; // before the walk, whatever that changes
    Ageable connectionBefore_;
    Ageable newestInput_;
    UpdateReason reason_;
    Finding finding_;
    std::optional<RequestTrace::Indentor> deeper_;
    std::optional<InputCursor> inputs_; // while they are walked
    RefPtr<VParameter> parameter_;      // of the input; an update may attach another meanwhile
    RefPtr<VObject> source_;
};

} // namespace Quorl
