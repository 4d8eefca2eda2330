#include <quorl/objects/OwnOperations.h>

#include <quorl/foundation/VirtualEntry.h>
#include <quorl/objects/CancellableRequest.h>
#include <quorl/objects/VObject.h>

#include <atomic>

namespace Quorl
{
namespace
{

/// Of the kernel's own ticket that can be cancelled; null as long as nobody has made one.
constinit std::atomic<const void*> theCancellableEntry{nullptr};

const void* entryOfRequest(const VObject& object)
{
    return Tolmen::virtualEntry(object, &VObject::request);
}

const void* entryOfHasRequest(const VObject& object)
{
    return Tolmen::virtualEntry(object, &VTraceRequestID::hasRequest);
}

const void* entryOfIgnoreInput(const VObject& object)
{
    return Tolmen::virtualEntry(object, &VSlotContainer::ignoreInput);
}

const void* entryOfMustUpdate(const VObject& object)
{
    return Tolmen::virtualEntry(object, &VObject::must_update);
}

const void* entryOfUnsychronizedUpdate(const VObject& object)
{
    return Tolmen::virtualEntry(object, &VObject::unsychronized_update);
}

const void* entryOfIsCancelled(const VRequest& request)
{
    return Tolmen::virtualEntry(request, &VRequest::isCancelled);
}

/// The entry of the defaults, learnt from the first one who asks.
template <auto entryOf, class Owner>
const void* defaultEntry(const Owner& owner)
{
    static const void* const entry = entryOf(owner);
    return entry;
}

template <auto entryOf, class Owner>
bool isOwn(const Owner& owner)
{
    const void* const entry = entryOf(owner);
    return entry == nullptr || entry != defaultEntry<entryOf>(owner);
}

} // namespace

bool OwnOperations::hasRequest(const VObject& object)
{
    return isOwn<entryOfRequest>(object);
}

bool OwnOperations::hasHasRequest(const VObject& object)
{
    return isOwn<entryOfHasRequest>(object);
}

bool OwnOperations::hasIgnoreInput(const VObject& object)
{
    return isOwn<entryOfIgnoreInput>(object);
}

bool OwnOperations::hasMustUpdate(const VObject& object)
{
    return isOwn<entryOfMustUpdate>(object);
}

bool OwnOperations::hasUnsychronizedUpdate(const VObject& object)
{
    return isOwn<entryOfUnsychronizedUpdate>(object);
}

bool OwnOperations::hasIsCancelled(const VRequest& request)
{
    if (!isOwn<entryOfIsCancelled>(request)) return false;
    const void* const entry = entryOfIsCancelled(request);
    return entry == nullptr || entry != theCancellableEntry.load(std::memory_order_relaxed);
}

void OwnOperations::learnDefaults(const VObject& object)
{
    defaultEntry<entryOfRequest>(object);
    defaultEntry<entryOfHasRequest>(object);
    defaultEntry<entryOfIgnoreInput>(object);
    defaultEntry<entryOfMustUpdate>(object);
    defaultEntry<entryOfUnsychronizedUpdate>(object);
}

void OwnOperations::learnDefaults(const VRequest& request)
{
    defaultEntry<entryOfIsCancelled>(request);
}

void OwnOperations::learnDefaults(const CancellableRequest& request)
{
    theCancellableEntry.store(entryOfIsCancelled(request), std::memory_order_relaxed);
}

} // namespace Quorl
