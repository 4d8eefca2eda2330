#include "Raster.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

namespace Maps
{
namespace
{

TEST(Raster, IsEmptyByDefault)
{
    const Raster<int> raster;

    EXPECT_TRUE(raster.isEmpty());
    EXPECT_EQ(raster.width(), 0);
    EXPECT_EQ(raster.height(), 0);
    EXPECT_TRUE(raster.samples().empty());
    EXPECT_EQ(raster, Raster<int>());
}

TEST(Raster, ReadsRowAfterRow)
{
    const Raster<int> raster(3, 2, {1, 2, 3, 4, 5, 6});

    EXPECT_EQ(raster.at(2, 0), 3);
    EXPECT_EQ(raster.at(0, 1), 4);
    EXPECT_EQ(raster.row(1)[2], 6);
}

TEST(Raster, CopiesShareTheirSamples)
{
    const Raster<int> raster(2, 1, {1, 2});
    const Raster<int> copy = raster; // NOLINT(performance-unnecessary-copy-initialization)

    EXPECT_EQ(copy.samples().data(), raster.samples().data());
    EXPECT_EQ(copy, raster);
}

TEST(Raster, ComparesShapeAndContent)
{
    const Raster<int> raster(2, 1, {1, 2});

    EXPECT_EQ(raster, Raster<int>(2, 1, {1, 2}));
    EXPECT_NE(raster, Raster<int>(2, 1, {1, 3}));
    EXPECT_NE(raster, Raster<int>(1, 2, {1, 2}));
    EXPECT_NE(raster, Raster<int>());
}

TEST(Raster, RefusesSamplesThatDoNotFillIt)
{
    EXPECT_THROW(Raster<int>(2, 2, {1, 2, 3}), MapError);
    EXPECT_THROW(Raster<int>(0, 0, {}), MapError);
    EXPECT_THROW(Raster<int>(-1, -1, {1}), MapError);
}

} // namespace
} // namespace Maps
