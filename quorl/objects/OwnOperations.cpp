#include <quorl/objects/OwnOperations.h>

#include <quorl/foundation/VirtualEntry.h>
#include <quorl/objects/VObject.h>

namespace Quorl
{
namespace
{

/// What an object runs for each of the operations.
struct Entries
{
    explicit Entries(const VObject& object)
        : request(Tolmen::virtualEntry(object, &VObject::request)),
          mustUpdate(Tolmen::virtualEntry(object, &VObject::must_update)),
          unsychronizedUpdate(Tolmen::virtualEntry(object, &VObject::unsychronized_update))
    {
    }

    const void* request;
    const void* mustUpdate;
    const void* unsychronizedUpdate;
};

const Entries& defaults(const VObject* first = nullptr)
{
    static const Entries theDefaults(*first);
    return theDefaults;
}

template <class Operation>
bool isOwn(const VObject& object, Operation operation, const void* const Entries::* kind)
{
    const void* const entry = Tolmen::virtualEntry(object, operation);
    return entry == nullptr || entry != defaults().*kind;
}

} // namespace

bool OwnOperations::hasRequest(const VObject& object)
{
    return isOwn(object, &VObject::request, &Entries::request);
}

bool OwnOperations::hasMustUpdate(const VObject& object)
{
    return isOwn(object, &VObject::must_update, &Entries::mustUpdate);
}

bool OwnOperations::hasUnsychronizedUpdate(const VObject& object)
{
    return isOwn(object, &VObject::unsychronized_update, &Entries::unsychronizedUpdate);
}

void OwnOperations::learnDefaults(const VObject& object)
{
    defaults(&object);
}

} // namespace Quorl
