#pragma once

#include "ColourMap.h"
#include "GridValues.h"
#include "Image.h"

namespace Quorl
{

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
