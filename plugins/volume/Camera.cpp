#include "Camera.h"

#include <plugins/grid/Earth.h>
#include <plugins/grid/MapError.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Volumes
{
namespace
{

using Maps::kRadiansPerDegree;
using Maps::MapError;

void check(double value, double low, double high, const char* complaint)
{
    if (!(value >= low && value <= high)) throw MapError(complaint);
}

constexpr double kFar = std::numeric_limits<double>::infinity();

/// The smallest interval with all that was added.
struct Interval
{
    double low = kFar;
    double high = -kFar;

    void add(double value)
    {
        low = std::min(low, value);
        high = std::max(high, value);
    }
    double middle() const { return 0.5 * (low + high); }
    double size() const { return high - low; }
};

} // namespace

void checkCamera(const Camera& camera)
{
    check(camera.azimuth, -360.0, 360.0,
          "the camera's azimuth is not between -360 and 360 degrees");
    check(camera.elevation, -90.0, 90.0,
          "the camera's elevation is not between -90 and 90 degrees");
    check(camera.roll, -360.0, 360.0, "the camera's roll is not between -360 and 360 degrees");
    check(camera.fieldOfView, 0.0, 90.0, "the field of view is not between 0 and 90 degrees");
    check(camera.zoom, 0.1, 20.0, "the zoom is not between 0.1 and 20");
}

View viewOf(const Camera& camera)
{
    const double azimuth = camera.azimuth * kRadiansPerDegree;
    const double elevation = camera.elevation * kRadiansPerDegree;
    const double roll = camera.roll * kRadiansPerDegree;
    const Vector back{-std::sin(azimuth) * std::cos(elevation),
                      std::cos(azimuth) * std::cos(elevation), std::sin(elevation)};
    const Vector right{-std::cos(azimuth), -std::sin(azimuth), 0.0};
    const Vector up = cross(back, right);
    // A camera that is turned clockwise has its right side where its lower right was.
    return {std::cos(roll) * right - std::sin(roll) * up,
            std::sin(roll) * right + std::cos(roll) * up, back};
}

Projection::Projection(const Mesh& mesh, const Camera& camera, int width, int height)
    : view_(viewOf(camera)), width_(width), height_(height)
{
    Interval x;
    Interval y;
    Interval z;
    for (const Vertex& vertex : mesh.vertices())
    {
        x.add(vertex.place[0]);
        y.add(vertex.place[1]);
        z.add(vertex.place[2]);
    }
    middle_ = {x.middle(), y.middle(), z.middle()};
    radius_ = std::max(1e-6, 0.5 * length({x.size(), y.size(), z.size()}));
    if (camera.fieldOfView > 0.0)
        distance_ = radius_ / std::sin(0.5 * camera.fieldOfView * kRadiansPerDegree);

    Interval across;
    Interval along;
    for (const Vertex& vertex : mesh.vertices())
    {
        const Projected seen = flat(vectorOf(vertex.place));
        across.add(seen.x);
        along.add(seen.y);
    }
    constexpr double kFilled = 0.92;
    const double least = 1e-6 * radius_;
    scale_ =
        camera.zoom * kFilled *
        std::min(width / std::max(least, across.size()), height / std::max(least, along.size()));
    x_ = across.middle();
    y_ = along.middle();
}

/// With a camera at a distance D, what is nearer by d is D / (D - d) times as large; that factor is
/// also linear along straight lines of the picture, as 1 / (D - d) is, and so serves as nearness.
Projected Projection::flat(const Vector& world) const
{
    const Vector offset = world - middle_;
    const double depth = dot(offset, view_.back);
    const double factor = distance_ > 0.0 ? distance_ / (distance_ - depth) : 1.0;
    return {factor * dot(offset, view_.right), factor * dot(offset, view_.up),
            distance_ > 0.0 ? factor : depth};
}

Projected Projection::place(const Vector& world) const
{
    const Projected seen = flat(world);
    return {0.5 * width_ + scale_ * (seen.x - x_), 0.5 * height_ - scale_ * (seen.y - y_),
            seen.nearness};
}

double Projection::depth(double nearness) const
{
    return distance_ > 0.0 ? distance_ * (1.0 - 1.0 / nearness) : nearness;
}

} // namespace Volumes
