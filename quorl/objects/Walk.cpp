#include <quorl/objects/Walk.h>

#include <quorl/objects/OwnOperations.h>
#include <quorl/objects/VObject.h>

namespace Quorl
{
namespace
{

constexpr double kPrecisionOfInputs = 1.0; // an object's own precision is no business of its inputs

} // namespace

/// What an exception leaves behind ends from the inside out.
Walk::~Walk()
{
    while (!path_.empty()) path_.pop_back();
}

bool Walk::from(VObject& object, double precision)
{
    if (!enter(object, precision)) return true; // Deliberate: it counts as modified.
    for (;;)
    {
        if (VObject* const source = path_.back().nextSource())
            ask(*source);
        else
        {
            const bool wasModified = leave();
            if (path_.empty()) return wasModified;
            path_.back().hearAnswer(wasModified);
        }
    }
}

/// Begins a visit, which is the last of the path then. \return false if the object cannot be
/// entered.
bool Walk::enter(VObject& object, double precision)
{
    if (path_.emplace_back(object, request_, precision, operation_).begin()) return true;
    path_.pop_back();
    return false;
}

void Walk::ask(VObject& source)
{
    Visit& asker = path_.back();
    if (OwnOperations::hasRequest(source))
        asker.hearAnswer(source.request(request_, kPrecisionOfInputs, asker.self(), origin_));
    else if (!enter(source, kPrecisionOfInputs))
        asker.hearAnswer(true); // Deliberate, as above.
}

/// Ends the last visit of the path. \return its answer.
bool Walk::leave()
{
    const bool wasModified = path_.back().conclude();
    path_.pop_back();
    return wasModified;
}

} // namespace Quorl
