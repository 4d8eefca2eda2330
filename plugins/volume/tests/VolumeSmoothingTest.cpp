#include "VolumeSmoothing.h"
#include <plugins/volume/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

namespace Volumes
{
namespace
{

constexpr Counts kCounts{12, 9, 7};
constexpr Affine kUneven{{0.5, 0, 0}, {0, 1, 0}, {0, 0, 2}, {}}; // mm a voxel

double sumOf(const Volume& volume)
{
    return std::accumulate(volume.samples().begin(), volume.samples().end(), 0.0);
}

double ragged(const Vector& place)
{
    return std::fmod(std::abs(17.0 * place.x + 31.0 * place.y * place.z), 11.0);
}

TEST(VolumeSmoothing, KeepsAConstant)
{
    const Volume volume = volumeOf(kCounts, kUneven, [](const Vector&) { return 117.25; });

    for (const double sigma : {0.2, 1.0, 8.0, 50.0})
    {
        const Volume smoothed = smooth(volume, sigma);
        for (const float value : smoothed.samples()) EXPECT_NEAR(value, 117.25, 1e-2);
    }
}

TEST(VolumeSmoothing, KeepsTheSumAlsoOfWhatLiesAtTheSides)
{
    const Volume volume = volumeOf(kCounts, kUneven, ragged);

    for (const double sigma : {0.2, 1.0, 8.0})
        EXPECT_NEAR(sumOf(smooth(volume, sigma)) / sumOf(volume), 1.0, 3e-6);
}

TEST(VolumeSmoothing, MakesAGaussianOfOneVoxelWithTheSameWidthInMillimetresAlongEachAxis)
{
    const Counts counts{61, 31, 17};
    const Vector middle = kUneven.place({30, 15, 8});
    const double sigma = 2.5;
    const Volume volume = volumeOf(
        counts, kUneven, [&](const Vector& place) { return place == middle ? 1000.0 : 0.0; });

    const Volume smoothed = smooth(volume, sigma);

    const double scale = 1000.0 / std::pow(std::sqrt(2.0 * std::numbers::pi) * sigma, 3.0);
    for (int k = 4; k <= 12; ++k)
        for (int j = 8; j <= 22; ++j)
            for (int i = 16; i <= 44; ++i)
            {
                const double distance =
                    length(kUneven.place({i * 1.0, j * 1.0, k * 1.0}) - middle) / sigma;
                EXPECT_NEAR(smoothed.at(i, j, k), scale * std::exp(-0.5 * distance * distance),
                            0.005 * scale);
            }
}

TEST(VolumeSmoothing, AnswersTheVolumeItselfForSigmaZero)
{
    const Volume volume = volumeOf(kCounts, kUneven, ragged);

    EXPECT_EQ(smooth(volume, 0.0).samples().data(), volume.samples().data());
}

TEST(VolumeSmoothing, RefusesASigmaThatIsNegativeTooWideOrNotANumber)
{
    for (const double bad : {-0.1, 50.1, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_EQ(errorOf([&] { smooth(volumeOf(kCounts, kUneven, ragged), bad); }),
                  "the smoothing is not between 0 and 50 mm");
}

TEST(VolumeSmoothing, RefusesASigmaOfTooManyVoxels)
{
    const Affine fine{{1.0, 0, 0}, {0, 1.0, 0}, {0, 0, 0.004}, {}};

    EXPECT_EQ(errorOf([&] { smooth(volumeOf(kCounts, fine, ragged), 4.5); }),
              "the smoothing is wider than 1000 voxels");
}

} // namespace
} // namespace Volumes
