#include "Smoothing.h"
#include "Earth.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

namespace Maps
{
namespace
{

double mean(std::span<const float> values)
{
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

TEST(Smoothing, KeepsAConstant)
{
    const auto constant = [](double, double) { return -106.3; };
    for (const Region& region : {Region{}, Region{50, 100, -20, 30}, Region{-30, 60, 60, 90}})
        for (const double sigma : {0.1, 2.0, 30.0})
        {
            const Field smoothed = smooth(fieldOf(region, 60, 40, constant), sigma);
            for (const float value : smoothed.values.samples()) EXPECT_FLOAT_EQ(value, -106.3F);
        }
}

TEST(Smoothing, KeepsTheMeanOfEachParallelRoundTheEarth)
{
    const auto ragged = [](double longitude, double) {
        return std::fmod(std::abs(longitude) * 7.3, 11.0) * (longitude > 100.0 ? 5.0 : 1.0);
    };
    const Field field = fieldOf({}, 120, 60, ragged);

    const Field smoothed = smooth(field, 4.0);

    for (int row = 0; row < 60; ++row)
        EXPECT_NEAR(mean(smoothed.values.row(row)), mean(field.values.row(row)), 1e-4);
}

TEST(Smoothing, DampsAWaveAsAGaussianDoes)
{
    // A wave of k cycles in 360 degrees is damped to exp(-(k sigma)^2 / 2), sigma in radians.
    const int cycles = 12;
    const double sigma = 3.0;
    const Region equator{-180.0, 180.0, -0.5, 0.5};
    const Field field = fieldOf(equator, 1440, 4, [&](double longitude, double) {
        return std::cos(cycles * longitude * kRadiansPerDegree);
    });

    const Field smoothed = smooth(field, sigma);

    const double damping = std::exp(-0.5 * std::pow(cycles * sigma * kRadiansPerDegree, 2.0));
    for (int column = 0; column < 1440; ++column)
        EXPECT_NEAR(smoothed.values.at(column, 1), damping * field.values.at(column, 1), 1e-4);
}

TEST(Smoothing, IsAsWideOnTheGroundAtEachLatitude)
{
    // The same at 60 degrees, where a degree of longitude is half as long: sigma counts double.
    const int cycles = 12;
    const double sigma = 3.0;
    const Region band{-180.0, 180.0, 59.99, 60.01};
    const Field field = fieldOf(band, 1440, 2, [&](double longitude, double) {
        return std::cos(cycles * longitude * kRadiansPerDegree);
    });

    const Field smoothed = smooth(field, sigma);

    const double damping = std::exp(-0.5 * std::pow(2.0 * cycles * sigma * kRadiansPerDegree, 2.0));
    EXPECT_NEAR(smoothed.values.at(720, 0) / field.values.at(720, 0), damping, 1e-3);
}

TEST(Smoothing, EvensOutTheParallelsAtThePoles)
{
    for (const Region& cap : {Region{-180, 180, 89.9, 90}, Region{-180, 180, -90, -89.9}})
    {
        const Field field = fieldOf(cap, 360, 2, [](double longitude, double) {
            return 10.0 * std::cos(longitude * kRadiansPerDegree);
        });

        const Field smoothed = smooth(field, 2.0);

        for (const float value : smoothed.values.samples()) EXPECT_NEAR(value, 0.0, 0.1);
    }
}

TEST(Smoothing, LeavesNoSeamWhereLongitudesWrap)
{
    const auto step = [](double longitude, double) { return longitude > 0.0 ? 1.0 : 0.0; };
    const Field fromDateLine = smooth(fieldOf({-180, 180, -10, 10}, 72, 4, step), 10.0);
    const Field fromGreenwich =
        smooth(fieldOf({0, 360, -10, 10}, 72, 4,
                       [&](double longitude, double latitude) {
                           return step(longitude > 180.0 ? longitude - 360.0 : longitude, latitude);
                       }),
               10.0);

    for (int column = 0; column < 72; ++column)
        EXPECT_NEAR(fromDateLine.values.at(column, 2),
                    fromGreenwich.values.at((column + 36) % 72, 2), 1e-6);
}

TEST(Smoothing, AnswersTheFieldItselfForSigmaZero)
{
    const Field field = fieldOf({}, 8, 4, [](double longitude, double) { return longitude; });

    const Field smoothed = smooth(field, 0.0);

    EXPECT_EQ(smoothed.values.samples().data(), field.values.samples().data());
}

TEST(Smoothing, RefusesASigmaThatIsNegativeTooWideOrNotANumber)
{
    const Field field = fieldOf({}, 8, 4, [](double, double) { return 0.0; });

    for (const double bad : {-0.1, 30.1, std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(errorOf([&] { smooth(field, bad); }),
                  "the smoothing is not between 0 and 30 degrees");
}

} // namespace
} // namespace Maps
