#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/VCreatorCache.h>
#include <quorl/modules/VModule.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <tests/fuzz/MemoryFile.h>

#include <vector>

/// Any bytes are read with the answer true, and leave entries without objects at the most.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (!Quorl::LoadVCreatorMapTypes(QuorlFuzz::pathOf(data, size))) std::abort();
    for (const auto& [type, domain] : Quorl::VCreatorTypes())
    {
        for (const auto& [name, info] : *domain)
            if (info && info->getCreator()) std::abort();
        domain->clear();
    }
    Quorl::VGlobals::theGlobals().modules->clear();
    return 0;
}
