#pragma once

#include "Field.h"

namespace Maps
{

/// What the values of a field are like as a whole, each pixel counted with its area on the Earth.
struct Statistics
{
    double least = 0.0;
    double greatest = 0.0;
    double mean = 0.0;
    double deviation = 0.0; ///< the root of the mean square distance from the mean
    double missing = 0.0;   ///< the share of the area without a value, 0 to 1

    friend bool operator==(const Statistics&, const Statistics&) = default;
};

/// The area of a pixel on a sphere is proportional to the difference of the sines of the latitudes
/// between which it lies. What is not finite is missing; if all is, the other numbers are NaN.
/// \throws MapError if the field is empty.
Statistics statistics(const Field& field);

} // namespace Maps
