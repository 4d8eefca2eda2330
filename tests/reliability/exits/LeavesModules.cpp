#include <quorl/kit/Network.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>
#include <tests/reliability/exits/UseEverything.h>

/// Leaves a module loaded; with the key of a creator, also an object of its code in the registry,
/// one in a static handle and one with the scheduler.
namespace
{

using namespace Quorl;

RefPtr<VObject> makeObject(const std::string& key, const std::string& name)
{
    return findCreator(key)->create(name, Tolmen::Intercube());
}

void leaveObjects(const std::string& key)
{
    makeObject(key, "in the registry");
    static const RefPtr<VObject> held = makeObject(key, "held");
    held->VManagedObject::remove();
    const RefPtr<ValuePool> pool(new ValuePool("left"));
    makeObject(key, "scheduled")->schedule(1.0, pool);
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 2 || !LoadVModule(arguments[1])) return 1;
    if (count > 2) leaveObjects(arguments[2]);
    std::puts("main ends");
}
