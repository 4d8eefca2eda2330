#include <quorl/foundation/StringFile.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace Tolmen
{
namespace
{

using LengthBytes = std::array<unsigned char, 8>;

LengthBytes littleEndian(std::uint64_t number)
{
    LengthBytes bytes;
    for (unsigned char& byte : bytes)
    {
        byte = static_cast<unsigned char>(number & 0xFF);
        number >>= 8;
    }
    return bytes;
}

std::uint64_t fromLittleEndian(const LengthBytes& bytes)
{
    std::uint64_t number = 0;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) number = number << 8 | *byte;
    return number;
}

} // namespace

std::string fgetstring(std::FILE* file)
{
    constexpr std::uint64_t kBlock = 65536;
    LengthBytes bytes{};
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) return {};

    std::string text;
    for (std::uint64_t missing = fromLittleEndian(bytes); missing > 0;)
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
    const LengthBytes bytes = littleEndian(text.size());
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
           std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

} // namespace Tolmen
