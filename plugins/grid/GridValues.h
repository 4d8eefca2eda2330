#pragma once

#include "Arithmetic.h"
#include "Contours.h"
#include "Field.h"
#include "Grid.h"
#include "Hillshade.h"
#include "Profile.h"
#include "WordForm.h"

#include <quorl/values/VValueTrait.h>

#include <string>

namespace Maps
{

/// The text form of types that travel between objects and are not for typing: what they are is
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

} // namespace Maps

namespace Quorl
{

template <>
struct VValueTrait<Maps::Grid> : Maps::NotReadable<Maps::Grid>
{
    static string Text(const Maps::Grid& grid)
    {
        return "grid of " + Maps::sizeText(grid.columns(), grid.rows());
    }
};

template <>
struct VValueTrait<Maps::Field> : Maps::NotReadable<Maps::Field>
{
    static string Text(const Maps::Field& field)
    {
        return "field of " + Maps::sizeText(field.width(), field.height());
    }
};

template <>
struct VValueTrait<Maps::ContourSet> : Maps::NotReadable<Maps::ContourSet>
{
    static string Text(const Maps::ContourSet& contours)
    {
        return std::to_string(contours.lines ? contours.lines->size() : 0) + " contours";
    }
};

template <>
struct VValueTrait<Maps::Light> : Maps::NotReadable<Maps::Light>
{
    static string Text(const Maps::Light& light)
    {
        return "light from " + std::to_string(light.azimuth) + " degrees, " +
               std::to_string(light.altitude) + " degrees high";
    }
};

template <>
struct VValueTrait<Maps::Profile> : Maps::NotReadable<Maps::Profile>
{
    static string Text(const Maps::Profile& profile)
    {
        return "profile of " + std::to_string(profile.values.width()) + " samples";
    }
};

/// "add", "subtract" or "multiply".
template <>
struct VValueTrait<Maps::Operation> : Maps::WordForm<Maps::Operation, Maps::kOperationWords>
{
};

} // namespace Quorl
