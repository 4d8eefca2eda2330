#include <quorl/platform/ModuleImage.h>
#include <tests/fuzz/MemoryFile.h>

/// Any bytes are refused, or give texts that stand in them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Tolmen::Platform::ModuleImage image(QuorlFuzz::pathOf(data, size));
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    for (const unsigned number : {1U, 2U})
        if (bytes.find(image.text(number, 1023)) == std::string::npos) std::abort();
    if (!image.error().empty() && image.hasTexts()) std::abort();
    return 0;
}
