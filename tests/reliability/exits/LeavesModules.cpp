#include <quorl/kit/Network.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>
#include <tests/reliability/exits/UseEverything.h>

/// Leaves a module loaded, with an object of its code in the registry, one in a static handle and
/// one with the scheduler.
namespace
{

using namespace Quorl;

RefPtr<VObject> makeObject(const std::string& key, const std::string& name)
{
    return findCreator(key)->create(name, Tolmen::Intercube());
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 3 || !LoadVModule(arguments[1])) return 1;
    const std::string key = arguments[2];
    makeObject(key, "in the registry");
    static const RefPtr<VObject> held = makeObject(key, "held");
    held->VManagedObject::remove();
    const RefPtr<ValuePool> pool(new ValuePool("left"));
    makeObject(key, "scheduled")->schedule(1.0, pool);
    std::puts("main ends");
}
