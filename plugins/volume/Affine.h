#pragma once

#include "Vector.h"

namespace Volumes
{

/// Takes places to places: three columns, to which the axes go, and where the origin goes.
struct Affine
{
    Vector x{1.0, 0.0, 0.0};
    Vector y{0.0, 1.0, 0.0};
    Vector z{0.0, 0.0, 1.0};
    Vector origin;

    friend bool operator==(const Affine&, const Affine&) = default;

    Vector place(const Vector& from) const { return turned(from) + origin; }

    /// The same for a difference of places, which has no origin.
    Vector turned(const Vector& from) const { return from.x * x + from.y * y + from.z * z; }

    /// What a gradient becomes: it is turned by the inverse, transposed. \pre isInvertible().
    Vector turnedGradient(const Vector& from) const
    {
        return (1.0 / determinant()) *
               (from.x * cross(y, z) + from.y * cross(z, x) + from.z * cross(x, y));
    }

    /// Negative if it makes a right hand a left one.
    double determinant() const { return dot(x, cross(y, z)); }

    /// Whether it keeps three dimensions, so far as rounding lets one tell.
    bool isInvertible() const
    {
        const double sizes = length(x) * length(y) * length(z);
        return std::isfinite(sizes) && std::isfinite(length(origin)) &&
               std::abs(determinant()) > 1e-6 * sizes;
    }

    /// \pre isInvertible().
    Affine inverse() const
    {
        const double scale = 1.0 / determinant();
        const Vector a = scale * cross(y, z); // the rows of the inverse
        const Vector b = scale * cross(z, x);
        const Vector c = scale * cross(x, y);
        Affine result{{a.x, b.x, c.x}, {a.y, b.y, c.y}, {a.z, b.z, c.z}, {}};
        result.origin = -1.0 * result.turned(origin);
        return result;
    }
};

} // namespace Volumes
