#include <quorl/foundation/StringFile.h>

#include <quorl/foundation/BinaryFile.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Tolmen
{

std::string fgetstring(std::FILE* file)
{
    constexpr std::uint64_t kBlock = 65536;
    std::uint64_t missing = 0;
    fgetnumber(missing, file);

    std::string text;
    while (missing > 0)
    {
        const auto wanted = static_cast<std::size_t>(std::min(missing, kBlock));
        const std::size_t before = text.size();
        text.resize(before + wanted);
        const std::size_t got = std::fread(text.data() + before, 1, wanted, file);
        text.resize(before + got);
        if (got < wanted) break;
        missing -= got;
    }
    return text;
}

bool fputstring(const std::string& text, std::FILE* file)
{
    return fputnumber(std::uint64_t{text.size()}, file) &&
           std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

} // namespace Tolmen
