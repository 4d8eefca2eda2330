#pragma once

#include <bit>
#include <cstdint>
#include <string>

namespace QuorlTest
{

/// The bytes of a file that tells who provides which types, item by item.
class InputCacheBytes
{
public:
    InputCacheBytes() { bytes_.append("ZelmInputCreatorCache\n", 23); }

    InputCacheBytes& number64(std::uint64_t number) { return little(number, 8); }
    InputCacheBytes& number32(std::int32_t number)
    {
        return little(static_cast<std::uint32_t>(number), 4);
    }
    InputCacheBytes& weight(double number)
    {
        return number64(std::bit_cast<std::uint64_t>(number));
    }
    InputCacheBytes& text(const std::string& text)
    {
        number64(text.size());
        bytes_ += text;
        return *this;
    }
    InputCacheBytes& entry(const std::string& type, const std::string& provider)
    {
        return text(type).text(provider).number32(7).number64(0);
    }

    const std::string& bytes() const { return bytes_; }

private:
    InputCacheBytes& little(std::uint64_t number, int count)
    {
        for (; count > 0; --count, number >>= 8) bytes_ += static_cast<char>(number & 0xFF);
        return *this;
    }

    std::string bytes_;
};

} // namespace QuorlTest
