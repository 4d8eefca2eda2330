#pragma once

#include <quorl/Forward.h>

namespace Quorl
{

/// Whether a class overrides what a walk calls. A default needs no call, since it is known what it
/// does. Where it cannot be told, the answer is that the class overrides it.
///
/// An object under construction or destruction answers for the class that it is just then.
class OwnOperations
{
public:
    static bool hasRequest(const VObject& object);
    static bool hasHasRequest(const VObject& object);
    static bool hasIgnoreInput(const VObject& object);
    static bool hasMustUpdate(const VObject& object);
    static bool hasUnsychronizedUpdate(const VObject& object);
    static bool hasIsCancelled(const VRequest& request); ///< other than the kernel's two

    // For the constructors of these classes, where nothing is overridden.
    static void learnDefaults(const VObject& object);
    static void learnDefaults(const VRequest& request);
    static void learnDefaults(const CancellableRequest& request);
};

} // namespace Quorl
