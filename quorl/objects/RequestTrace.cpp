#include <quorl/objects/RequestTrace.h>

#include <quorl/foundation/Typename.h>
#include <quorl/objects/VObject.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/ValuePool.h>

#include <cstdio>

namespace Quorl
{
namespace
{

bool isVerbose(std::int32_t level)
{
    return VObject::VERBOSE_REQUEST > level;
}

bool isTalking()
{
    return VObject::VERBOSE_REQUEST != 0;
}

void indent()
{
    std::printf("%*s", RequestTrace::Indentor::indnt, "");
}

const char* nameOf(const VObject& object)
{
    return object.getName().c_str();
}

/// The class bears the name of its own number, which is the base's.
long numberOf(const VRequest& request)
{
    return request.Id ? request.Id->Tolmen::ReferenceBase<VRequest::ID>::ID : 0;
}

long ticks(const Ageable& age)
{
    return static_cast<long>(age.stamp());
}

} // namespace

constinit std::int32_t RequestTrace::Indentor::indnt = 0;

void RequestTrace::begin(double precision) const
{
    if (!isTalking()) return;
    indent();
    std::printf(">>> \tVObject: %s::request(Request %ld, prec=%lg)\tt=%ld, (connected at t=%ld, "
                "inputs=%d, outputs=%d)\n",
                nameOf(object_), numberOf(request_), precision, ticks(age_),
                ticks(object_.ConnectionAge()), object_.getNumberOfParameters(0),
                object_.getNumberOfOutputs());
}

void RequestTrace::recursionStopped() const
{
    if (!isTalking()) return;
    indent();
    std::printf("   TOP: VObject[%s]: Recursive request, no action taken here!\n", nameOf(object_));
}

void RequestTrace::occupied() const
{
    std::printf("VObject[%s]::request(): YIKES! Here already is a request (%p) attached, can't "
                "have no more!!!\n",
                nameOf(object_), static_cast<void*>(object_.Current));
}

void RequestTrace::walked(bool isActionDemanded) const
{
    if (!isVerbose(2)) return;
    indent();
    if (isActionDemanded)
        std::printf("      \tObject: ACTION indicated for %s\n", nameOf(object_));
    else
        std::printf("      \tObject: NO action indicated for %s\n", nameOf(object_));
}

void RequestTrace::stateIsOld(const Ageable& state) const
{
    if (!isTalking()) return;
    indent();
    std::printf("Object Local State %ld is modified, but old\n", ticks(state));
}

void RequestTrace::poolIsMissing() const
{
    if (isVerbose(3) && !request_.Pool)
        std::printf("%s: VOBJECT REQUEST WITHOUT GHOSTVALUES!\n", nameOf(object_));
}

void RequestTrace::notUpdated() const
{
    if (isVerbose(10)) std::printf("Object: %s NOT updated.\n", nameOf(object_));
}

void RequestTrace::updating(const Ageable& newestInput, bool isActionDemanded,
                            const string& reason) const
{
    if (!isTalking()) return;
    indent();
    std::printf("**OBJECT UPDATE[%s]: Call %s->update() newest input is %ld, current age is %ld ",
                Tolmen::Typename(typeid(object_)).c_str(), nameOf(object_), ticks(newestInput),
                ticks(age_));
    indent();
    if (isActionDemanded)
        std::printf("... because an action happened: %s\n", reason.c_str());
    else
        std::printf("...because it must update\n");
    if (!isVerbose(10)) return;
    const std::int32_t level = object_.Executor.Level;
    std::printf("%*s[%d]  %s->update() T=%ld\n", level, "", level, nameOf(object_), ticks(age_));
}

void RequestTrace::updateFailed(const Ageable& newestInput) const
{
    if (!isTalking()) return;
    std::printf("Object: %s update FAILED for t=%ld, it has t=%ld now.\n", nameOf(object_),
                ticks(newestInput), ticks(age_));
}

void RequestTrace::updated(const Ageable& newestInput, const Ageable& ageBefore) const
{
    if (!isTalking()) return;
    std::printf("Object: %s update called successfully for newest input t=%ld, it has aged to "
                "t=%ld now.\n",
                nameOf(object_), ticks(newestInput), ticks(age_));
    if (age_ != ageBefore)
        std::printf("      INFO: %s::update() changed from t=%ld to t=%ld now.\n", nameOf(object_),
                    ticks(ageBefore), ticks(age_));
}

void RequestTrace::exception(const string& text) const
{
    std::fprintf(stderr, "EXCEPTION: %s::update(): %s\n", nameOf(object_), text.c_str());
    std::fflush(stderr);
}

void RequestTrace::input(const VSlot& slot) const
{
    if (!isVerbose(10)) return;
    indent();
    std::printf("==> %s->%s [object input]\n", nameOf(object_), slot.Name.c_str());
}

void RequestTrace::inputIsNewer(const VSlot& slot, const Ageable& parameter) const
{
    if (!isVerbose(2)) return;
    indent();
    std::printf("  %s(t=%ld): ACTION: AHA! Input [%s(t=%ld)] is newer!\n", nameOf(object_),
                ticks(age_), slot.Name.c_str(), ticks(parameter));
}

void RequestTrace::inputAge(const VSlot& slot, const Ageable& parameter,
                            const Ageable& newestInput) const
{
    if (!isVerbose(10)) return;
    indent();
    std::printf("  %s(t=%ld): [%s] has t=%ld (newest so far is %ld)\n", nameOf(object_),
                ticks(age_), slot.Name.c_str(), ticks(parameter), ticks(newestInput));
}

void RequestTrace::inputHasNoObject() const
{
    if (!isVerbose(20)) return;
    indent();
    std::printf("\tinput has no object associated...");
}

void RequestTrace::pureInputIsNewer(const VSlot& slot, const Ageable& parameter) const
{
    if (!isTalking()) return;
    indent();
    std::printf("  ACTION: non-object related input [%s] is newer than %ld, should update object "
                "to %ld...\n",
                slot.Name.c_str(), ticks(age_), ticks(parameter));
}

void RequestTrace::sourceIsOlderThanInput(const VSlot& slot, const Ageable& parameter,
                                          const VObject& source) const
{
    if (!isVerbose(4)) return;
    const Ageable& sourceAge = source.age(request_.Pool);
    if (!(parameter > sourceAge)) return;
    indent();
    std::printf("   \t\t      %s(t=%ld) input [%s(t=%ld)] as owned by object %s(t=%ld)\t[member "
                "'%s'] - REQUIRES UPDATE\n",
                nameOf(object_), ticks(age_), slot.Name.c_str(), ticks(parameter), nameOf(source),
                ticks(sourceAge), slot.Member.c_str());
}

void RequestTrace::sourceIsNotReady(const VObject& source) const
{
    std::printf("Vobject[%s]::request(): skip object, it's not yet ready.\n", nameOf(source));
}

void RequestTrace::cycleStopped(const VObject& source) const
{
    if (!isVerbose(4)) return;
    indent();
    std::printf("   (Recursive request in %s, stopping here, no action from this slot)\n",
                nameOf(source));
}

void RequestTrace::sourceWasModified(const VObject& source, const Ageable& parameter,
                                     const Ageable& newestInput) const
{
    if (!isVerbose(5)) return;
    indent();
    std::printf("%s: Input ACTION Object '%s' was modified to %ld (newest input %ld), object is "
                "at %ld now\n",
                nameOf(object_), nameOf(source), ticks(parameter), ticks(newestInput),
                ticks(source.age(request_.Pool)));
}

void RequestTrace::sourceIsNewer(const VSlot& slot, const Ageable& sourceAge) const
{
    if (!isVerbose(5)) return;
    indent();
    std::printf("Input ACTION %s::request(t=%ld) -> input %s is t=%ld, need to update because "
                "object is newer.\n",
                nameOf(object_), ticks(age_), slot.Name.c_str(), ticks(sourceAge));
}

void RequestTrace::sourceIsConstant(const VObject& source, const Ageable& sourceAge) const
{
    if (!isVerbose(20)) return;
    indent();
    std::printf("%s(t=%ld): Parameter '%s(t=%ld)' remained constant, so no update .\n",
                nameOf(object_), ticks(age_), nameOf(source), ticks(sourceAge));
}

} // namespace Quorl
