#pragma once

#include "Raster.h"
#include "Region.h"

namespace Maps
{

/// A quantity over a region, one value a pixel, in equirectangular projection: row 0 is the
/// northernmost, column 0 the westernmost, and a value stands in the middle of its pixel.
///
/// Cheap to copy. Equal if region and values are (see Raster). A default field is empty.
struct Field
{
    Region region;
    Raster<float> values; ///< metres for heights, 0 to 1 for shades

    int width() const { return values.width(); }
    int height() const { return values.height(); }

    double degreesPerColumn() const { return region.longitudeSpan() / width(); }
    double degreesPerRow() const { return region.latitudeSpan() / height(); }

    /// Degrees north of the middle of a row.
    double latitude(int row) const { return region.north - (row + 0.5) * degreesPerRow(); }

    /// Degrees east of the middle of a column; not brought back below 360.
    double longitude(int column) const { return region.west + (column + 0.5) * degreesPerColumn(); }

    friend bool operator==(const Field&, const Field&) = default;
};

} // namespace Maps
