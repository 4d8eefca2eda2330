#pragma once

namespace Maps
{

/// A place on the Earth, in degrees.
struct Place
{
    double latitude = 0.0;  ///< north, in [-90, 90]
    double longitude = 0.0; ///< east

    friend bool operator==(const Place&, const Place&) = default;
};

/// The shortest way between two places on a sphere of the Earth's mean radius.
class GreatCircle
{
public:
    /// \throws MapError if a place is not on the Earth, a longitude is beyond 360 degrees, or there
    /// is not one shortest way: the places are the same, or opposite each other.
    GreatCircle(const Place& from, const Place& to);

    double length() const; ///< metres

    /// The place at a part of the way, 0 to 1; its longitude is in [-180, 180].
    Place at(double part) const;

private:
    struct Direction
    {
        double x;
        double y;
        double z;
    };
    static Direction directionOf(const Place& place);

    Direction from_;
    Direction to_;
    double angle_; // radians, between 0 and pi
};

} // namespace Maps
