#include <quorl/foundation/VGlobals.h>
#include <quorl/kit/Network.h>
#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VRequest.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/values/ValuePool.h>

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

/// A host that opens the modules of its working directory, uses what they bring, unloads them one
/// by one and ends. It says how far it has come.
namespace
{

using namespace Quorl;

constexpr std::size_t kMostNamed = 8;

std::vector<string> liveCreators()
{
    std::vector<string> keys;
    const VCreatorMap& domain = *VCreators(typeid(VInputCreatorBase));
    for (const auto& [key, info] : domain)
        if (domain.liveCreator(key)) keys.push_back(key);
    return keys;
}

void tellCreators()
{
    const std::vector<string> keys = liveCreators();
    std::printf("creators:");
    for (const string& key : keys)
        if (keys.size() <= kMostNamed) std::printf(" %s", key.c_str());
    if (keys.size() > kMostNamed) std::printf(" %zu", keys.size());
    std::printf("\n");
}

/// Makes an object, evaluates it, and lets it go.
void use(const string& key)
{
    const RefPtr<VCreatorBase> creator = findCreator(key);
    const RefPtr<VObject> object = creator->create("used", Tolmen::Intercube());
    if (!object)
    {
        std::printf("%s makes nothing\n", key.c_str());
        return;
    }
    const RefPtr<ValuePool> pool(new ValuePool);
    VRequest request(pool, false);
    object->init_request(request, 1.0);
    object->VManagedObject::remove();
}

void useAll()
{
    for (const string& key : liveCreators()) try
        {
            use(key);
        }
        catch (const std::exception& error)
        {
            std::printf("%s throws: %s\n", key.c_str(), error.what());
        }
    VActionNotifier::StatusInfo("all are used");
}

void unloadAll()
{
    LeaveItems remover;
    std::vector<string> paths;
    for (const auto& [path, info] : *VGlobals::theGlobals().modules) paths.push_back(path);
    for (const string& path : paths)
    {
        std::printf("unloading %s\n", path.c_str());
        std::fflush(stdout);
        UnloadVModule(path, remover);
    }
    tellCreators();
}

} // namespace

int main()
{
    std::printf("opened: %d\n", openModules(".", nullptr, false, {}));
    tellCreators();
    std::fflush(stdout);
    useAll();
    unloadAll();
    std::printf("done\n");
}
