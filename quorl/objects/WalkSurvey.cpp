#include <quorl/objects/WalkSurvey.h>

#include <quorl/objects/OwnOperations.h>
#include <quorl/objects/VObject.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>

namespace Quorl
{
namespace
{

/// Whether each visit asks the object for more than its ages, or for one that others may replace
/// unseen.
bool hasASay(const VObject& object)
{
    return OwnOperations::hasHasRequest(object) || OwnOperations::hasIgnoreInput(object) ||
           OwnOperations::hasMustUpdate(object) || object.hasConnectionValidators() ||
           object.areStatesLent();
}

} // namespace

WalkSurvey::Result WalkSurvey::from(VObject& root)
{
    Result result = enter(root);
    while (result == Result::Complete && !path_.empty())
    {
        Stop& stop = path_.back();
        if (!stop.inputs.next())
        {
            isOnPath_[stop.place] = false;
            path_.pop_back();
            continue;
        }
        const RefPtr<VSlot>& slot = stop.inputs.slot();
        if (!stop.object.takesPart(slot)) continue;
        if (const RefPtr<VObject> source = slot->Parameter->source)
            result = follow(*source, stop.place);
    }
    return result;
}

WalkSurvey::Result WalkSurvey::follow(VObject& source, Place asker)
{
    const Place known = graph_.placeOf(source);
    if (known != WalkGraph::kNowhere)
    {
        graph_.addSource(asker, known);
        return isOnPath_[known] ? Result::Impossible : Result::Complete;
    }
    if (!source.RequestProcessing || OwnOperations::hasRequest(source)) return Result::Impossible;
    const Result result = enter(source);
    if (result == Result::Complete) graph_.addSource(asker, path_.back().place);
    return result;
}

WalkSurvey::Result WalkSurvey::enter(VObject& object)
{
    if (walked_.placeOf(object) == WalkGraph::kNowhere) return Result::Disturbed;
    if (hasASay(object)) return Result::Impossible;
    path_.emplace_back(object, graph_.add(object), InputCursor(object, VObject::kAllLevels));
    isOnPath_.push_back(true);
    return Result::Complete;
}

} // namespace Quorl
