#include <quorl/registry/VCreatorMapTypes.h>

#include <quorl/foundation/AtCleanUp.h>
#include <quorl/foundation/CastCache.h> // counts what has left

#include <atomic>
#include <cstdint>

namespace Quorl
{
namespace
{

/// At the end objects leave their domain one by one: what they ask of the registry while they end,
/// and what they take out of it, is whole.
void empty(const VCreatorMapTypes& domains)
{
    for (const auto& [type, domain] : domains)
        while (domain && !domain->empty()) domain->remove(domain->begin()->first);
}

} // namespace

VCreatorMapTypes& VCreatorTypes()
{
    static auto& domains = *new VCreatorMapTypes;
    static const Tolmen::AtCleanUp end([] { empty(domains); });
    return domains;
}

namespace
{

/// The domain that this thread asked for last. Names of types may be those of others once a module
/// has left.
struct LastDomain
{
    const std::type_info* type;
    std::uint32_t unloadCount;
    const RefPtr<VCreatorMap>* domain;
};

#if defined(__GNUC__)
[[gnu::tls_model("initial-exec")]] // a few bytes, so that a library loaded late has them as well
#endif
constinit thread_local LastDomain theLast{nullptr, 0, nullptr};

} // namespace

VCreatorMap* VCreators(const std::type_info& type)
{
    const std::uint32_t unloadCount = Tolmen::theUnloadCount.load(std::memory_order_relaxed);
    const bool isKnown = theLast.type == &type && theLast.unloadCount == unloadCount;
    if (isKnown && *theLast.domain) return theLast.domain->rawptr();
    RefPtr<VCreatorMap>& domain = VCreatorTypes()[type];
    if (!domain) domain = new VCreatorMap;
    theLast = {&type, unloadCount, &domain};
    return domain.rawptr();
}

} // namespace Quorl
