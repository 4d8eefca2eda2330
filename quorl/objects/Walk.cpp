#include <quorl/objects/Walk.h>

#include <quorl/objects/OwnOperations.h>
#include <quorl/objects/VObject.h>

#include <new>

namespace Quorl
{
namespace
{

constexpr double kPrecisionOfInputs = 1.0; // an object's own precision is no business of its inputs

} // namespace

/// What an exception leaves behind ends from the inside out.
Walk::~Walk()
{
    try
    {
        repeats_.realize();
    }
    catch (const std::bad_alloc&)
    {
        // What latent visits come to is lost.
    }
    if (!path_.isEmpty()) Tolmen::Watch::shapeChanges(); // objects stay occupied
}

bool Walk::from(VObject& object, double precision)
{
    if (!enter(object, precision, repeats_.meet(object))) return true; // Deliberate: as modified.
    for (;;)
    {
        if (VObject* const source = path_.top().nextSource())
        {
            ask(*source);
            continue;
        }
        const bool wasModified = leave();
        if (path_.isEmpty())
        {
            repeats_.realize();
            if (repeats_.hasKeptTicket()) plans_.learn(request_, repeats_.graph());
            return wasModified;
        }
        path_.top().hearAnswer(wasModified);
    }
}

/// Begins a visit, which is the last of the path then. \return false if the object is not entered.
bool Walk::enter(VObject& object, double precision, Repeats::Place place)
{
    if (path_.push(object, request_, precision, operation_, Finding(repeats_, place)).begin())
    {
        plans_.parts().enter(object);
        return true;
    }
    path_.pop();
    return false;
}

/// Ends the last visit of the path. \return its answer.
bool Walk::leave()
{
    const bool wasModified = path_.top().conclude();
    path_.pop();
    return wasModified;
}

/// Finds the answer of a source of the last visit, or begins the visit that finds it.
void Walk::ask(VObject& source)
{
    Visit& asker = path_.top();
    if (repeats_.isSettled(source))
    {
        repeats_.passOver(source, asker.place());
        asker.hearAnswer(false);
    }
    else if (plans_.parts().beginsIdlePart(source, request_))
    {
        repeats_.tell(source, asker.place());
        plans_.parts().repeat(request_);
        asker.hearAnswer(false);
    }
    else if (OwnOperations::hasRequest(source))
    {
        repeats_.tell(source, asker.place());
        repeats_.foreignCodeRan();
        asker.hearAnswer(source.request(request_, kPrecisionOfInputs, asker.self(), origin_));
    }
    else if (!enter(source, kPrecisionOfInputs, repeats_.lead(source, asker.place())))
        asker.hearAnswer(true); // Deliberate, as above.
}

} // namespace Quorl
