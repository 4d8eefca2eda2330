#pragma once

#include "Raster.h"

#include <cmath>

namespace Maps
{

/// Metres above or below the ellipsoid beyond which a height cannot be one of the Earth's geoid,
/// which stays within about -107 and +86.
inline constexpr float kGreatestHeight = 1000.0F;

template <class Float>
bool isHeightOfGeoid(Float metres)
{
    return std::abs(metres) <= kGreatestHeight; // false for what is no number
}

/// Heights in metres at the nodes of a geographic grid, as a file gives them: row 0 is the
/// southernmost, column 0 the westernmost, and the samples stand on the nodes themselves.
///
/// Cheap to copy. Equal if position and heights are (see Raster). A default grid is empty.
struct Grid
{
    double west = 0.0;          ///< longitude of column 0, degrees east
    double south = 0.0;         ///< latitude of row 0, degrees north
    double longitudeStep = 0.0; ///< degrees from a column to the next, positive
    double latitudeStep = 0.0;  ///< degrees from a row to the next, positive
    Raster<float> heights;      ///< metres

    int columns() const { return heights.width(); }
    int rows() const { return heights.height(); }
    double east() const { return west + longitudeStep * (columns() - 1); } ///< of the last column
    double north() const { return south + latitudeStep * (rows() - 1); }   ///< of the last row

    /// True if the columns close the circle, so that the last one has the first as neighbour (or
    /// repeats it).
    bool wraps() const { return longitudeStep * columns() > 360.0 - 1e-6 * longitudeStep; }

    friend bool operator==(const Grid&, const Grid&) = default;
};

} // namespace Maps
