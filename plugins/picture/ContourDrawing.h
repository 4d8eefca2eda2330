#pragma once

#include "Contours.h"
#include "Image.h"
#include "LineMask.h"

namespace Maps
{

/// The pens for contours, which are all of one dark ink.
struct ContourStyle
{
    Pen plain{0.9, 0.40};
    Pen fifth{1.4, 0.62}; ///< every fifth line
    Pen zero{2.0, 0.80};

    friend bool operator==(const ContourStyle&, const ContourStyle&) = default;
};

/// Draws contours over a picture of their size, with smooth edges. Where lines meet, the darker
/// one counts, so that joints and crossings do not show as dots.
/// \throws MapError if the sizes differ.
LinearImage drawContours(const LinearImage& picture, const ContourSet& contours,
                         const ContourStyle& style);

} // namespace Maps
