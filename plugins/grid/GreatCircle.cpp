#include "GreatCircle.h"

#include "Earth.h"
#include "MapError.h"

#include <cmath>

namespace Maps
{
namespace
{

void checkPlace(const Place& place)
{
    if (!(std::abs(place.latitude) <= 90.0 && std::abs(place.longitude) <= 360.0))
        throw MapError("an end of the great circle is not on the Earth");
}

} // namespace

GreatCircle::Direction GreatCircle::directionOf(const Place& place)
{
    const double north = place.latitude * kRadiansPerDegree;
    const double east = place.longitude * kRadiansPerDegree;
    return {std::cos(north) * std::cos(east), std::cos(north) * std::sin(east), std::sin(north)};
}

/// The angle comes from sine and cosine together, which is exact for short and for long ways.
GreatCircle::GreatCircle(const Place& from, const Place& to)
    : from_(directionOf(from)), to_(directionOf(to))
{
    checkPlace(from);
    checkPlace(to);
    const double sine =
        std::hypot(from_.y * to_.z - from_.z * to_.y, from_.z * to_.x - from_.x * to_.z,
                   from_.x * to_.y - from_.y * to_.x);
    angle_ = std::atan2(sine, from_.x * to_.x + from_.y * to_.y + from_.z * to_.z);
    constexpr double kLeastSine = 1e-9; // some millimetres
    if (sine < kLeastSine)
        throw MapError("the ends of the great circle are the same, or opposite each other");
}

double GreatCircle::length() const
{
    return kEarthRadiusInMetres * angle_;
}

/// K. Shoemake's interpolation on a sphere ("Animating rotation with quaternion curves", SIGGRAPH
/// 1985): the speed along the way is constant.
Place GreatCircle::at(double part) const
{
    const double before = std::sin((1.0 - part) * angle_) / std::sin(angle_);
    const double behind = std::sin(part * angle_) / std::sin(angle_);
    const double x = before * from_.x + behind * to_.x;
    const double y = before * from_.y + behind * to_.y;
    const double z = before * from_.z + behind * to_.z;
    return {std::atan2(z, std::hypot(x, y)) / kRadiansPerDegree,
            std::atan2(y, x) / kRadiansPerDegree};
}

} // namespace Maps
