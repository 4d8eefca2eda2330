#pragma once

#include "ColourMap.h"
#include "Contours.h"
#include "Field.h"
#include "Grid.h"
#include "Hillshade.h"
#include "Image.h"

#include <quorl/values/VValueTrait.h>

#include <string>

namespace Geoid
{

/// The text form of the types that travel between steps and are not for typing: what they are is
/// told, and nothing is read.
template <class T>
struct NotReadable
{
    static bool setValueFromText(T& /*datum*/, const std::string& /*text*/) { return false; }
};

inline std::string sizeText(int width, int height)
{
    return std::to_string(width) + " x " + std::to_string(height);
}

} // namespace Geoid

namespace Quorl
{

template <>
struct VValueTrait<Geoid::Grid> : Geoid::NotReadable<Geoid::Grid>
{
    static string Text(const Geoid::Grid& grid)
    {
        return "grid of " + Geoid::sizeText(grid.columns(), grid.rows());
    }
};

template <>
struct VValueTrait<Geoid::Field> : Geoid::NotReadable<Geoid::Field>
{
    static string Text(const Geoid::Field& field)
    {
        return "field of " + Geoid::sizeText(field.width(), field.height());
    }
};

template <>
struct VValueTrait<Geoid::LinearImage> : Geoid::NotReadable<Geoid::LinearImage>
{
    static string Text(const Geoid::LinearImage& image)
    {
        return "image of " + Geoid::sizeText(image.width(), image.height());
    }
};

template <>
struct VValueTrait<Geoid::ContourSet> : Geoid::NotReadable<Geoid::ContourSet>
{
    static string Text(const Geoid::ContourSet& contours)
    {
        return std::to_string(contours.lines ? contours.lines->size() : 0) + " contours";
    }
};

template <>
struct VValueTrait<Geoid::ColourMap> : Geoid::NotReadable<Geoid::ColourMap>
{
    static string Text(const Geoid::ColourMap& map)
    {
        return "colours from " + std::to_string(map.low()) + " m to " + std::to_string(map.high()) +
               " m";
    }
};

template <>
struct VValueTrait<Geoid::Light> : Geoid::NotReadable<Geoid::Light>
{
    static string Text(const Geoid::Light& light)
    {
        return "light from " + std::to_string(light.azimuth) + " degrees, " +
               std::to_string(light.altitude) + " degrees high";
    }
};

} // namespace Quorl
