#pragma once

#include "Field.h"
#include "GreatCircle.h"

namespace Maps
{

/// The most samples that a profile may have.
inline constexpr int kMostProfileSamples = 100000;

/// What a field shows along a great circle. Cheap to copy; equal if ends and values are. A default
/// one is empty.
struct Profile
{
    Place from;
    Place to;
    double length = 0.0;  ///< metres from the one to the other
    Raster<float> values; ///< in one row, at equal distances, the first and the last at the ends

    friend bool operator==(const Profile&, const Profile&) = default;
};

/// The value of a field at a place, interpolated bilinearly between the middles of pixels; within
/// half a pixel of an edge that of the edge. Where the region goes round the Earth it has no edges
/// in the east and the west.
/// \throws MapError if the field is empty, or the place is not in its region.
float valueAt(const Field& field, const Place& place);

/// Samples a field along the shortest way between two places.
/// \throws MapError if `samples` is not in [2, kMostProfileSamples], there is not one shortest way
/// (see GreatCircle), or it leaves the region.
Profile sampleProfile(const Field& field, const Place& from, const Place& to, int samples);

} // namespace Maps
