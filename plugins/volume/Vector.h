#pragma once

#include <cmath>

namespace Volumes
{

/// A place, a direction or a length along each axis, in three dimensions.
struct Vector
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    friend bool operator==(const Vector&, const Vector&) = default;

    friend Vector operator+(const Vector& a, const Vector& b)
    {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend Vector operator-(const Vector& a, const Vector& b)
    {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend Vector operator*(double factor, const Vector& a)
    {
        return {factor * a.x, factor * a.y, factor * a.z};
    }
};

inline double dot(const Vector& a, const Vector& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vector cross(const Vector& a, const Vector& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double length(const Vector& a)
{
    return std::sqrt(dot(a, a));
}

/// The direction of a vector, of length 1; what has no direction stays as it is.
inline Vector direction(const Vector& a)
{
    const double size = length(a);
    return size > 0.0 ? (1.0 / size) * a : a;
}

} // namespace Volumes
