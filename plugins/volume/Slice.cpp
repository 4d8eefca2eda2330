#include "Slice.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace Volumes
{
namespace
{

/// The plane of a picture in the world: where its lower left corner is, and where its sides go.
struct Plane
{
    Vector corner;
    Vector right;
    Vector up;
    double width = 0.0; // millimetres
    double height = 0.0;
};

std::string millimetres(double value)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%g", value);
    return text.data();
}

void checkPosition(double position, double low, double high)
{
    if (position >= low && position <= high) return;
    throw MapError("the position of the slice is not between " + millimetres(low) + " and " +
                   millimetres(high) + " mm");
}

Plane planeAt(const Box& box, Axis axis, double position)
{
    const Vector size = box.high - box.low;
    const Vector x{1.0, 0.0, 0.0};
    const Vector y{0.0, 1.0, 0.0};
    const Vector z{0.0, 0.0, 1.0};
    switch (axis)
    {
        case Axis::X:
            checkPosition(position, box.low.x, box.high.x);
            return {{position, box.low.y, box.low.z}, y, z, size.y, size.z};
        case Axis::Y:
            checkPosition(position, box.low.y, box.high.y);
            return {{box.low.x, position, box.low.z}, x, z, size.x, size.z};
        default:
            checkPosition(position, box.low.z, box.high.z);
            return {{box.low.x, box.low.y, position}, x, y, size.x, size.y};
    }
}

int pixelsIn(double size, double step)
{
    constexpr double kSlack = 1e-6;
    const double count = std::floor(size / step + kSlack) + 1.0;
    if (!(step > 0.0 && count <= kLongestSide))
        throw MapError("the step of the slice is not positive, or gives more than " +
                       std::to_string(kLongestSide) + " pixels a side");
    return static_cast<int>(count);
}

} // namespace

Maps::Raster<float> cut(const Volume& volume, Axis axis, double position, double step)
{
    if (volume.isEmpty()) throw MapError("there is no volume to cut");
    const Plane plane = planeAt(volume.extent(), axis, position);
    const int width = pixelsIn(plane.width, step);
    const int height = pixelsIn(plane.height, step);
    const Affine toVoxels = volume.toWorld().inverse();

    std::vector<float> values;
    values.reserve(Maps::sampleCount(width, height));
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column)
        {
            const Vector place = plane.corner + (column * step) * plane.right +
                                 ((height - 1 - row) * step) * plane.up;
            values.push_back(volume.between(toVoxels.place(place)));
        }
    return {width, height, std::move(values)};
}

Maps::LinearImage inGrey(const Maps::Raster<float>& values, double low, double high)
{
    if (!(std::isfinite(low) && std::isfinite(high) && low < high))
        throw MapError("the range of grey is empty or not finite");
    if (values.isEmpty()) return {};

    std::vector<Maps::LinearRgb> pixels;
    pixels.reserve(values.samples().size());
    for (const float value : values.samples())
    {
        const double part = std::isnan(value) ? 0.0 : (value - low) / (high - low);
        const auto grey =
            static_cast<std::uint8_t>(std::lround(255.0 * std::clamp(part, 0.0, 1.0)));
        pixels.push_back(Maps::decode(Maps::Rgb{grey, grey, grey}));
    }
    return {values.width(), values.height(), std::move(pixels)};
}

} // namespace Volumes
