#include <quorl/foundation/BinaryFile.h>
#include <quorl/foundation/StringFile.h>
#include <tests/fuzz/MemoryFile.h>

#include <string_view>

/// Any bytes give texts that stand in them one behind the other, and a text that is written is read
/// again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kLength = 8;
    const std::string path = QuorlFuzz::pathOf(data, size);
    const Tolmen::OwnedFile file(std::fopen(path.c_str(), "rb+"));
    if (!file) std::abort();
    std::string_view left(reinterpret_cast<const char*>(data), size);
    while (left.size() >= kLength)
    {
        left.remove_prefix(kLength);
        const std::string text = Tolmen::fgetstring(file.get());
        if (!left.starts_with(text)) std::abort();
        left.remove_prefix(text.size());
    }
    if (!Tolmen::fgetstring(file.get()).empty()) std::abort();

    const std::string whole(reinterpret_cast<const char*>(data), size);
    std::rewind(file.get());
    if (!Tolmen::fputstring(whole, file.get())) std::abort();
    std::rewind(file.get());
    if (Tolmen::fgetstring(file.get()) != whole) std::abort();
    return 0;
}
