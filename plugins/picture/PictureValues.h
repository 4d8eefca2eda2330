#pragma once

#include "ColourMap.h"
#include "GridValues.h"
#include "Image.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace Quorl
{

/// "#rrggbb", with hexadecimal digits of either case; anything else is refused.
template <>
struct VValueTrait<Maps::Rgb>
{
    static bool setValueFromText(Maps::Rgb& datum, const string& text)
    {
        unsigned number = 0;
        const char* const end = text.data() + text.size();
        if (text.size() != 7 || text[0] != '#') return false;
        const auto [stop, error] = std::from_chars(text.data() + 1, end, number, 16);
        if (error != std::errc() || stop != end) return false;
        datum = {static_cast<std::uint8_t>(number >> 16U), static_cast<std::uint8_t>(number >> 8U),
                 static_cast<std::uint8_t>(number)};
        return true;
    }

    static string Text(const Maps::Rgb& colour)
    {
        std::array<char, 8> text{};
        std::snprintf(text.data(), text.size(), "#%02x%02x%02x", unsigned{colour.red},
                      unsigned{colour.green}, unsigned{colour.blue});
        return text.data();
    }
};

template <>
struct VValueTrait<Maps::LinearImage> : Maps::NotReadable<Maps::LinearImage>
{
    static string Text(const Maps::LinearImage& image)
    {
        return "image of " + Maps::sizeText(image.width(), image.height());
    }
};

template <>
struct VValueTrait<Maps::ColourMap> : Maps::NotReadable<Maps::ColourMap>
{
    static string Text(const Maps::ColourMap& map)
    {
        return "colours from " + std::to_string(map.low()) + " m to " + std::to_string(map.high()) +
               " m";
    }
};

} // namespace Quorl
