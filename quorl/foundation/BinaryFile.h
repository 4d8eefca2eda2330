#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <type_traits>

/// What readers and writers of binary files have in common. Numbers are little-endian.
namespace Tolmen
{

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

using OwnedFile = std::unique_ptr<std::FILE, CloseFile>;

/// \return whether a whole number could be read; if not, `number` is left alone.
template <class Integer>
bool fgetnumber(Integer& number, std::FILE* file)
{
    using Unsigned = std::make_unsigned_t<Integer>;
    std::array<unsigned char, sizeof(Integer)> bytes{};
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) return false;
    Unsigned value = 0;
    for (std::size_t place = bytes.size(); place-- > 0;)
        value = static_cast<Unsigned>(value << 8 | bytes[place]);
    number = static_cast<Integer>(value);
    return true;
}

/// \return whether all of the number was written.
template <class Integer>
bool fputnumber(Integer number, std::FILE* file)
{
    auto left = static_cast<std::make_unsigned_t<Integer>>(number);
    std::array<unsigned char, sizeof(Integer)> bytes{};
    for (unsigned char& byte : bytes)
    {
        byte = static_cast<unsigned char>(left & 0xFF);
        left = static_cast<std::make_unsigned_t<Integer>>(left >> 8);
    }
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

} // namespace Tolmen
