#include "AsciiGridFile.h"
#include "GridFile.h"
#include <plugins/grid/tests/Support.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace Maps
{
namespace
{

using testing::HasSubstr;

struct AsciiGridFile : testing::Test
{
    std::filesystem::path write(const std::string& text, const std::string& name = "grid.asc")
    {
        std::ofstream(folder / name, std::ios::binary) << text;
        return folder / name;
    }

    std::string complaint(const std::string& text)
    {
        return errorOf([&] { readAsciiGrid(write(text)); });
    }

    QuorlTest::TemporaryFolder folder;
};

const std::string kSmall = "ncols 3\nnrows 2\nxllcorner 10\nyllcorner -1\ncellsize 2\n"
                           "NODATA_value -9999\n1 2 3\n4 5 6.5\n";

TEST_F(AsciiGridFile, GivesRowsFromTheSouth)
{
    const Grid grid = readAsciiGrid(write(kSmall));

    EXPECT_EQ(grid.columns(), 3);
    EXPECT_EQ(grid.rows(), 2);
    EXPECT_EQ(grid.west, 11.0) << "the middle of the first cell";
    EXPECT_EQ(grid.south, 0.0);
    EXPECT_EQ(grid.longitudeStep, 2.0);
    EXPECT_EQ(grid.latitudeStep, 2.0);
    EXPECT_EQ(grid.heights.at(0, 0), 4.0F);
    EXPECT_EQ(grid.heights.at(2, 0), 6.5F);
    EXPECT_EQ(grid.heights.at(0, 1), 1.0F);
}

TEST_F(AsciiGridFile, TakesCentersAndAnyCaseAndLayout)
{
    const Grid grid = readAsciiGrid(
        write("NCOLS 1\r\nNRows 1\r\nXLLCENTER 10\r\nYllCenter 20 CELLSIZE .5\r\n-1e1"));
    EXPECT_EQ(grid.west, 10.0);
    EXPECT_EQ(grid.south, 20.0);
    EXPECT_EQ(grid.heights.at(0, 0), -10.0F);
}

TEST_F(AsciiGridFile, IsChosenByItsSuffix)
{
    EXPECT_EQ(readGrid(write(kSmall, "small.ASC")), readAsciiGrid(write(kSmall)));
    EXPECT_NE(errorOf([&] { readGrid(write(kSmall, "small.gtx")); }), "");
    EXPECT_TRUE(isGridFile("a.GTX"));
    EXPECT_TRUE(isGridFile("a.asc"));
    EXPECT_FALSE(isGridFile("a.png"));
    EXPECT_FALSE(isGridFile("asc"));
}

TEST_F(AsciiGridFile, SaysWhatIsWrong)
{
    const std::string head = "ncols 2\nnrows 1\nxllcorner 0\nyllcorner 0\ncellsize 1\n";
    EXPECT_THAT(complaint(""), HasSubstr("it ends early"));
    EXPECT_THAT(complaint("rows 2"), HasSubstr("it has no ncols where that belongs"));
    EXPECT_THAT(complaint("ncols 2.5"), HasSubstr("ncols is no count"));
    EXPECT_THAT(complaint("ncols 0"), HasSubstr("ncols is no count"));
    EXPECT_THAT(complaint("ncols many"), HasSubstr("ncols is no number: many"));
    EXPECT_THAT(complaint("ncols 2 nrows 1 xllcorner 0 yllcorner 0 cellsize 0 1 2"),
                HasSubstr("cellsize is not positive"));
    EXPECT_THAT(complaint(head + "1"), HasSubstr("it ends early"));
    EXPECT_THAT(complaint(head + "1 x"), HasSubstr("a height is no number: x"));
    EXPECT_THAT(complaint(head + "1 nan"), HasSubstr("a height is no number: nan"));
    EXPECT_THAT(complaint(head + "1 1e6"), HasSubstr("this is no height of the geoid"));
    EXPECT_THAT(complaint(head + "1 2 3"), HasSubstr("it goes on behind the last height"));
    EXPECT_THAT(complaint(head + "nodata_value -9 1 -9"),
                HasSubstr("there is no height at 1.500000, 0.500000"));
    EXPECT_THAT(complaint("ncols 999999999 nrows 999999999 xllcorner 0 yllcorner 0 cellsize 1 1"),
                HasSubstr("it ends early"))
        << "without asking for that much memory";
    EXPECT_THAT(complaint("ncols 2 nrows 1 xllcorner 0 yllcorner 95 cellsize 1 1 2"),
                HasSubstr("its coordinates are not on the Earth"));
    EXPECT_THAT(errorOf([&] { readAsciiGrid(folder / "absent.asc"); }),
                HasSubstr("absent.asc': it cannot be opened"));
    EXPECT_THAT(errorOf([&] { readAsciiGrid(folder.path()); }), HasSubstr("it is a folder"));
    EXPECT_THAT(errorOf([&] { readAsciiGrid("/dev/zero"); }),
                HasSubstr("it is not a regular file"));
}

} // namespace
} // namespace Maps
