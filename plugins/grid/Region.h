#pragma once

namespace Maps
{

/// A part of the Earth between two meridians and two parallels, in degrees. A plain value; the
/// default is the whole Earth with Greenwich in the middle.
struct Region
{
    double west = -180.0;
    double east = 180.0; ///< if not east of `west`, the region crosses the meridian where the
                         ///< numbers jump: 170 to -170 is 20 degrees wide
    double south = -90.0;
    double north = 90.0;

    /// Degrees from west to east, in (0, 360].
    double longitudeSpan() const { return east > west ? east - west : east - west + 360.0; }
    double latitudeSpan() const { return north - south; }

    /// True if the eastern edge meets the western one.
    bool wraps() const { return longitudeSpan() > 360.0 - 1e-9; }

    friend bool operator==(const Region&, const Region&) = default;
};

/// \throws MapError unless all four are finite, -90 <= south < north <= 90, longitudes lie
/// within [-360, 360], and the width is in (0, 360].
void checkRegion(const Region& region);

} // namespace Maps
