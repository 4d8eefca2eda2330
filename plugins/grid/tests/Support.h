#pragma once

#include "Field.h"
#include "MapError.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Maps
{

/// A field of which each value is made from the longitude and latitude of its pixel, in degrees.
template <class Function>
Field fieldOf(const Region& region, int width, int height, Function&& valueAt)
{
    const double columnStep = region.longitudeSpan() / width;
    const double rowStep = region.latitudeSpan() / height;
    std::vector<float> values;
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column)
            values.push_back(static_cast<float>(valueAt(region.west + (column + 0.5) * columnStep,
                                                        region.north - (row + 0.5) * rowStep)));
    return {region, Raster<float>(width, height, std::move(values))};
}

/// The words of the MapError that `action` throws; empty if it throws none.
template <class Action>
std::string errorOf(Action&& action)
{
    try
    {
        action();
    }
    catch (const MapError& error)
    {
        return error.what();
    }
    return {};
}

} // namespace Maps
