#include "Region.h"

#include "MapError.h"

#include <cmath>

namespace Maps
{

void checkRegion(const Region& region)
{
    for (const double value : {region.west, region.east, region.south, region.north})
        if (!std::isfinite(value)) throw MapError("a bound of the region is not finite");
    if (region.south < -90.0 || region.north > 90.0)
        throw MapError("the region reaches beyond a pole");
    if (region.south >= region.north)
        throw MapError("the region's north is not north of its south");
    if (std::abs(region.west) > 360.0 || std::abs(region.east) > 360.0)
        throw MapError("a longitude of the region is beyond 360 degrees");
    if (region.west == region.east || region.longitudeSpan() > 360.0 ||
        region.longitudeSpan() <= 0.0)
        throw MapError("the region is not between 0 and 360 degrees wide");
}

} // namespace Maps
