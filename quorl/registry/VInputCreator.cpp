#include <quorl/foundation/Typename.h>
#include <quorl/registry/InputCreatorTables.h>
#include <quorl/registry/VInputCreator.h>
#include <quorl/services/VActionNotifier.h>

#include <cstdio>

namespace Quorl
{
namespace
{

constexpr double kScoreWithoutPreferences = 1.0;

double scoreOf(const RefPtr<VCreationPreferences>& wanted,
               const RefPtr<VCreationPreferences>& offered)
{
    return wanted && offered ? wanted->weight(*offered) : kScoreWithoutPreferences;
}

RefPtr<VInputCreatorBase> findCreator(const string& name)
{
    return VManagedObject::find(typeid(VInputCreatorBase), name);
}

/// The best so far, and its score. Scores must be above 0, and above those before.
struct Best
{
    bool beatenBy(double candidate)
    {
        if (!(candidate > score)) return false;
        score = candidate;
        return true;
    }

    WeakPtr<VInputCreatorBase> live;
    string offline; ///< empty unless one that only the cache knows is ahead
    bool isOffline = false;
    double score = 0.0;
};

void considerRegistered(const std::type_info& type, const RefPtr<VCreationPreferences>& wanted,
                        Best& best)
{
    const auto entry = InputCreatorRegistry().find(type);
    if (entry == InputCreatorRegistry().end()) return;
    entry->second.visit([&](std::uint64_t, const WeakPtr<VInputCreatorBase>& creator) {
        if (creator && best.beatenBy(scoreOf(wanted, creator->preferences))) best.live = creator;
        return true;
    });
}

void considerOffline(const std::type_info& type, const RefPtr<VCreationPreferences>& wanted,
                     Best& best)
{
    if (theInputCreatorLoader().empty()) return; // spares the name of the type
    const auto entry = theInputCreatorLoader().find(Tolmen::Typename(type));
    if (entry == theInputCreatorLoader().end()) return;
    entry->second.visit([&](std::uint64_t, const InputCreatorLoader& loader) {
        if (!best.beatenBy(scoreOf(wanted, loader.preferences))) return true;
        best.isOffline = true;
        best.offline = loader.provider;
        return true;
    });
}

bool visitRegistered(const std::type_info& type, VInputCreatorIterator& visitor)
{
    const auto entry = InputCreatorRegistry().find(type);
    if (entry == InputCreatorRegistry().end()) return true;
    return entry->second.visit([&](std::uint64_t, const WeakPtr<VInputCreatorBase>& creator) {
        return !creator || visitor.apply(creator);
    });
}

/// Loads each of them. What is found leaves the list before the visitor sees it.
bool visitOffline(OfflineCreators& loaders, VInputCreatorIterator& visitor)
{
    return loaders.visit([&](std::uint64_t number, const InputCreatorLoader& loader) {
        const WeakPtr<VInputCreatorBase> creator = findCreator(loader.provider);
        if (!creator) return true;
        loaders.remove(number);
        return visitor.apply(creator);
    });
}

} // namespace

VInputCreatorIterator::~VInputCreatorIterator() = default;

std::map<Tolmen::TypeInfo, RegisteredCreators>& InputCreatorRegistry()
{
    static auto& table = *new std::map<Tolmen::TypeInfo, RegisteredCreators>;
    return table;
}

std::map<string, OfflineCreators>& theInputCreatorLoader()
{
    static auto& table = *new std::map<string, OfflineCreators>;
    return table;
}

bool registerVInput(const std::type_info& type, const WeakPtr<VInputCreatorBase>& creator)
{
    if (!creator)
    {
        VActionNotifier::Warning("No creator of input " + Tolmen::Typename(type) +
                                 " given, cannot register input!");
        std::printf("*WARNING*: No creator of input %s given, cannot register input!\n",
                    type.name());
        return false;
    }
    InputCreatorRegistry()[type].append(creator);
    return true;
}

bool unregisterVInput(const std::type_info& type, const WeakPtr<VInputCreatorBase>& creator)
{
    const auto entry = InputCreatorRegistry().find(type);
    return entry != InputCreatorRegistry().end() &&
           entry->second.removeFirst(
               [&](const WeakPtr<VInputCreatorBase>& present) { return present == creator; });
}

bool iterateVInputCreators(const std::type_info& type, VInputCreatorIterator& visitor)
{
    if (!visitRegistered(type, visitor)) return false;
    const string typeName = Tolmen::Typename(type);
    const auto entry = theInputCreatorLoader().find(typeName);
    if (entry == theInputCreatorLoader().end()) return true;
    std::printf("VInputCreator.cppiterateVInputCreators(%s) GOT OFFLINE STUFF\n", typeName.c_str());
    return visitOffline(entry->second, visitor);
}

WeakPtr<VInputCreatorBase> findBestVInputCreator(const std::type_info& type,
                                                 const RefPtr<VCreationPreferences>& preferences)
{
    Best best;
    considerRegistered(type, preferences, best);
    considerOffline(type, preferences, best);
    if (!best.isOffline) return best.live;
    if (const WeakPtr<VInputCreatorBase> loaded = findCreator(best.offline)) return loaded;
    std::printf(" Too bad, no object %s, weight %lg\n", best.offline.c_str(), best.score);
    return best.live;
}

} // namespace Quorl
