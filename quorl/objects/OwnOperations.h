#pragma once

#include <quorl/Forward.h>

namespace Quorl
{

/// Whether an object's class overrides what a walk calls. A default needs no call, since it is
/// known what it does. Where it cannot be told, the answer is that the class does.
///
/// An object under construction or destruction answers for the class that it is just then.
class OwnOperations
{
public:
    static bool hasRequest(const VObject& object);
    static bool hasMustUpdate(const VObject& object);
    static bool hasUnsychronizedUpdate(const VObject& object);

    /// For the constructor of `VObject`, where an object has nothing of its own.
    static void learnDefaults(const VObject& object);
};

} // namespace Quorl
