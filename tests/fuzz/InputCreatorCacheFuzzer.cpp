#include <quorl/registry/InputCreatorCache.h>
#include <quorl/registry/InputCreatorTables.h>
#include <quorl/registry/VInputCreator.h>
#include <tests/fuzz/MemoryFile.h>

/// Any bytes are read to their end, or to where they stop to make sense. What was entered can be
/// ranked.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Quorl::LoadInputCreatorCache(QuorlFuzz::pathOf(data, size));
    const Quorl::RefPtr<Quorl::VCreationPreferences> wanted(
        new Quorl::VCreationPreferences("word"));
    if (Quorl::findBestVInputCreator(typeid(double), wanted)) std::abort();
    Quorl::theInputCreatorLoader().clear(); // one input shall not slow down the next
    return 0;
}
