#pragma once

#include "Field.h"

namespace Maps
{

/// A distant light, and how steep the heights are made for it.
struct Light
{
    double azimuth = 315.0;        ///< degrees clockwise from north, where the light comes from
    double altitude = 45.0;        ///< degrees above the horizon, in (0, 90]
    double exaggeration = 10000.0; ///< of the heights against the distances, not negative

    friend bool operator==(const Light&, const Light&) = default;
};

/// How brightly each pixel of a field of heights in metres is lit: the cosine of the angle between
/// its normal and the light, 0 (turned away) to 1 (turned towards it). No shadows are cast.
///
/// The slope comes from the eight neighbours after B. K. P. Horn, "Hill shading and the
/// reflectance map", Proceedings of the IEEE 69(1), 1981: with the neighbours
///
///     a b c
///     d e f        p = ((c + 2f + i) - (a + 2d + g)) / (8 dx)    eastward
///     g h i        q = ((a + 2b + c) - (g + 2h + i)) / (8 dy)    northward
///
/// where dx and dy are metres on the ground, dx shrinking with the cosine of the latitude. With p
/// and q exaggerated, the shade of light from azimuth A and altitude H is
///
///     (sin H - cos H (p sin A + q cos A)) / sqrt(1 + p^2 + q^2), at least 0.
///
/// Columns wrap where the region goes round the Earth. At the other edges the missing neighbours
/// are left out, and the slope is taken over the shorter distance.
/// \throws MapError if the light is not finite or outside the ranges told with it.
Field hillshade(const Field& heights, const Light& light);

/// The shade of level ground under `light`: the sine of its altitude.
double shadeOfLevelGround(const Light& light);

} // namespace Maps
