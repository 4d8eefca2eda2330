#pragma once

#include "Image.h"
#include "Profile.h"

#include <string>

namespace Maps
{

/// How a profile is plotted.
struct PlotLook
{
    int width = 1000;       ///< pixels of the picture, axes and numbers included, in [200, 8192]
    int height = 500;       ///< in [150, 8192]
    std::string unit = "m"; ///< of the values, in UTF-8

    friend bool operator==(const PlotLook&, const PlotLook&) = default;
};

/// A curve of the values over the distance from the first end in kilometres, with numbers on both
/// axes, and the places of the ends. The axis of the values holds all of them, with some room;
/// where there is no value (NaN), the curve has a gap.
/// \throws MapError for a size beyond its range, a profile without values, or a missing font.
Image plotProfile(const Profile& profile, const PlotLook& look);

} // namespace Maps
