#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/VCreatorCache.h>
#include <quorl/modules/VModule.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <tests/fuzz/MemoryFile.h>

#include <sys/stat.h>

#include <array>
#include <ctime>

namespace
{

/// How many domains a file says that it has. For each there are lines, also behind its end.
std::uint64_t domainsOf(const std::uint8_t* data, std::size_t size)
{
    std::uint64_t number = 0;
    for (std::size_t place = 0; place < 8 && place < size; ++place)
        number |= std::uint64_t{data[place]} << (8 * place);
    return number;
}

/// "/proc/self/fd/100", a file of no bytes and of the first second of 1970, so that entries of it
/// with zeros are those of the file as it is.
class ModuleFile
{
public:
    ModuleFile()
    {
        constexpr int kNumber = 100;
        const int file = ::memfd_create("module", MFD_CLOEXEC);
        const std::array<timespec, 2> times{};
        if (::dup2(file, kNumber) != kNumber || ::futimens(kNumber, times.data()) != 0)
            std::abort();
        ::close(file);
    }
};

} // namespace

/// Any bytes are read with the answer true, and leave entries without objects at the most. Those
/// that take a while to say nothing are passed over.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::uint64_t kMostDomains = 100; // more than the bytes can tell of
    constexpr std::size_t kDomainBytes = 24;    // at least, of each
    constexpr int kNotForTheCorpus = -1;
    static const ModuleFile module;
    if (domainsOf(data, size) > kMostDomains + size / kDomainBytes) return kNotForTheCorpus;
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
