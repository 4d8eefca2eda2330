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

/// The number in the first `sizeof(Integer)` bytes.
template <class Integer>
Integer fromLittleEndian(const char* bytes)
{
    using Unsigned = std::make_unsigned_t<Integer>;
    Unsigned value = 0;
    for (std::size_t place = sizeof(Integer); place-- > 0;)
        value = static_cast<Unsigned>(value << 8 | static_cast<unsigned char>(bytes[place]));
    return static_cast<Integer>(value);
}

/// \return whether a whole number could be read; if not, `number` is left alone.
template <class Integer>
bool fgetnumber(Integer& number, std::FILE* file)
{
    std::array<char, sizeof(Integer)> bytes{};
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) return false;
    number = fromLittleEndian<Integer>(bytes.data());
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
