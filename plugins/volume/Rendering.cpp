#include "Rendering.h"

#include "Fragments.h"
#include "Hollows.h"

#include <plugins/grid/Earth.h>
#include <plugins/grid/MapError.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace Volumes
{
namespace
{

using Maps::LinearImage;
using Maps::LinearRgb;
using Maps::MapError;

constexpr int kSamplesASide = 2;     // of a pixel
constexpr double kHollowSigma = 2.0; // millimetres
constexpr double kDarkestHollow = 4.0;

void check(double value, double low, double high, const char* complaint)
{
    if (!(value >= low && value <= high)) throw MapError(complaint);
}

void checkLamp(const Lamp& lamp)
{
    check(lamp.azimuth, -180.0, 180.0, "the lamp's azimuth is not between -180 and 180 degrees");
    check(lamp.elevation, -90.0, 90.0, "the lamp's elevation is not between -90 and 90 degrees");
    check(lamp.ambient, 0.0, 1.0, "the ambient light is not between 0 and 1");
    check(lamp.gloss, 0.0, 1.0, "the gloss is not between 0 and 1");
    check(lamp.occlusion, 0.0, 1.0, "the occlusion is not between 0 and 1");
}

void checkSize(const Look& look)
{
    constexpr int kLeast = 16;
    for (const int side : {look.width, look.height})
        check(side, kLeast, kMostPixelsASide,
              "a side of the picture is not between 16 and 4096 pixels");
}

LinearRgb mixed(const LinearRgb& from, const LinearRgb& to, float part)
{
    return {from.red + part * (to.red - from.red), from.green + part * (to.green - from.green),
            from.blue + part * (to.blue - from.blue)};
}

/// What one sample of the surface sends to the camera.
class Shading
{
public:
    Shading(const View& view, const Lamp& lamp, const LinearRgb& surface)
        : lamp_(lamp), surface_(surface), back_(view.back), toLamp_(towards(view, lamp)),
          between_(direction(toLamp_ + view.back))
    {
    }

    /// \param hollow millimetres, as `hollows` tells them
    LinearRgb at(const Vector& normal, double hollow) const
    {
        constexpr double kSharpness = 40.0;
        const double facing = 0.5 + 0.5 * dot(normal, back_);
        const double lit = std::max(0.0, dot(normal, toLamp_));
        const double open = 1.0 - lamp_.occlusion * darkness(hollow);
        const double matt = open * (lamp_.ambient * facing + (1.0 - lamp_.ambient) * lit);
        const double mirror = std::pow(std::max(0.0, dot(normal, between_)), kSharpness);
        const double shine = lit > 0.0 ? open * lamp_.gloss * mirror : 0.0;
        return {channel(surface_.red, matt, shine), channel(surface_.green, matt, shine),
                channel(surface_.blue, matt, shine)};
    }

private:
    static Vector towards(const View& view, const Lamp& lamp)
    {
        const double azimuth = lamp.azimuth * Maps::kRadiansPerDegree;
        const double elevation = lamp.elevation * Maps::kRadiansPerDegree;
        return std::cos(elevation) * std::sin(azimuth) * view.right +
               std::sin(elevation) * view.up + std::cos(elevation) * std::cos(azimuth) * view.back;
    }

    static double darkness(double hollow)
    {
        const double part = std::min(1.0, hollow / kDarkestHollow);
        return part * (2.0 - part);
    }

    static float channel(float colour, double matt, double shine)
    {
        return static_cast<float>(colour * matt + shine);
    }

    const Lamp& lamp_;
    const LinearRgb surface_;
    const Vector back_;
    const Vector toLamp_;
    const Vector between_; // of the lamp and the camera
};

LinearImage plain(const Look& look)
{
    return {look.width, look.height,
            std::vector<LinearRgb>(Maps::sampleCount(look.width, look.height), look.background)};
}

/// The mean of the samples of a pixel; a sample that nothing covers has the background.
class Mean
{
public:
    Mean(const Fragments& fragments, const std::vector<float>& hollow, const Shading& shading,
         const LinearRgb& background)
        : fragments_(fragments), hollow_(hollow), shading_(shading), background_(background)
    {
    }

    LinearRgb at(int column, int row) const
    {
        LinearRgb mean = background_;
        float count = 0.0F;
        for (int y = 0; y < kSamplesASide; ++y)
            for (int x = 0; x < kSamplesASide; ++x)
                mean = mixed(mean, sample(kSamplesASide * column + x, kSamplesASide * row + y),
                             1.0F / ++count);
        return mean;
    }

private:
    LinearRgb sample(int x, int y) const
    {
        const std::size_t place =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(fragments_.width) +
            static_cast<std::size_t>(x);
        if (!fragments_.isCovered(place)) return background_;
        return shading_.at(direction(vectorOf(fragments_.normals[place])), hollow_[place]);
    }

    const Fragments& fragments_;
    const std::vector<float>& hollow_;
    const Shading& shading_;
    const LinearRgb background_;
};

} // namespace

LinearImage render(const Mesh& mesh, const Camera& camera, const Lamp& lamp, const Look& look)
{
    checkCamera(camera);
    checkLamp(lamp);
    checkSize(look);
    if (mesh.isEmpty()) return plain(look);

    const int width = kSamplesASide * look.width;
    const int height = kSamplesASide * look.height;
    const Projection projection(mesh, camera, width, height);
    const Fragments fragments = rasterise(mesh, projection, width, height);
    const std::vector<float> hollow = hollows(fragments, kHollowSigma);
    const Shading shading(projection.view(), lamp, look.surface);
    const Mean mean(fragments, hollow, shading, look.background);

    std::vector<LinearRgb> pixels;
    pixels.reserve(Maps::sampleCount(look.width, look.height));
    for (int row = 0; row < look.height; ++row)
        for (int column = 0; column < look.width; ++column) pixels.push_back(mean.at(column, row));
    return {look.width, look.height, std::move(pixels)};
}

} // namespace Volumes
