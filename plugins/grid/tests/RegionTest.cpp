#include "Region.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <limits>

namespace Maps
{
namespace
{

TEST(Region, IsTheWholeEarthByDefault)
{
    const Region region;

    EXPECT_EQ(region.longitudeSpan(), 360.0);
    EXPECT_EQ(region.latitudeSpan(), 180.0);
    EXPECT_TRUE(region.wraps());
    EXPECT_NO_THROW(checkRegion(region));
}

TEST(Region, MayCrossTheDateLine)
{
    const Region region{170.0, -170.0, -10.0, 10.0};

    EXPECT_EQ(region.longitudeSpan(), 20.0);
    EXPECT_FALSE(region.wraps());
    EXPECT_NO_THROW(checkRegion(region));
}

TEST(Region, RefusesEachBadBound)
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();

    for (const Region& bad : {Region{kNan, 10, 0, 10}, Region{0, kInfinity, 0, 10},
                              Region{0, 10, kNan, 10}, Region{0, 10, 0, kNan}})
        EXPECT_EQ(errorOf([&] { checkRegion(bad); }), "a bound of the region is not finite");
    for (const Region& bad : {Region{0, 10, -90.5, 10}, Region{0, 10, 0, 91}})
        EXPECT_EQ(errorOf([&] { checkRegion(bad); }), "the region reaches beyond a pole");
    for (const Region& bad : {Region{0, 10, 10, 10}, Region{0, 10, 20, 10}})
        EXPECT_EQ(errorOf([&] { checkRegion(bad); }),
                  "the region's north is not north of its south");
    EXPECT_EQ(errorOf([] { checkRegion({-361, 10, 0, 10}); }),
              "a longitude of the region is beyond 360 degrees");
    for (const Region& bad :
         {Region{10, 10, 0, 10}, Region{-180, 181, 0, 10}, Region{360, -10, 0, 10}})
        EXPECT_EQ(errorOf([&] { checkRegion(bad); }),
                  "the region is not between 0 and 360 degrees wide");
}

} // namespace
} // namespace Maps
