#include "GtxFile.h"
#include <plugins/grid/tests/Support.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <bit>
#include <cstdint>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

namespace Maps
{
namespace
{

template <class Word>
void append(std::string& bytes, Word word)
{
    for (int shift = 8 * static_cast<int>(sizeof(Word)) - 8; shift >= 0; shift -= 8)
        bytes += static_cast<char>(static_cast<unsigned char>(word >> shift));
}

/// The parts of a GTX file, good ones unless a test changes them: 3 x 4 nodes, 90 degrees apart.
struct Parts
{
    double south = -90.0;
    double west = -180.0;
    double latitudeStep = 90.0;
    double longitudeStep = 90.0;
    std::uint32_t rows = 3;
    std::uint32_t columns = 4;
    std::vector<float> heights = {0, 1, 2, 3, 10, 11, 12, 13, 20, 21, 22, -23.5F};

    std::string bytes() const
    {
        std::string result;
        for (const double number : {south, west, latitudeStep, longitudeStep})
            append(result, std::bit_cast<std::uint64_t>(number));
        append(result, rows);
        append(result, columns);
        for (const float height : heights) append(result, std::bit_cast<std::uint32_t>(height));
        return result;
    }
};

class GtxFile : public testing::Test
{
protected:
    std::filesystem::path write(const std::string& bytes) const
    {
        std::ofstream(path_, std::ios::binary) << bytes;
        return path_;
    }

    /// What reading these bytes complains of, after the name of the file.
    std::string complaint(const std::string& bytes) const
    {
        const std::string error = errorOf([&] { readGtx(write(bytes)); });
        const std::string name = MapError::about(path_, "").what();
        EXPECT_EQ(error.substr(0, name.size()), name);
        return error.empty() ? error : error.substr(name.size());
    }

    const QuorlTest::TemporaryFolder folder_;
    const std::filesystem::path path_ = folder_ / "grid.gtx";
};

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST_F(GtxFile, ReadsPositionAndHeightsFromSouthToNorth)
{
    const Grid grid = readGtx(write(Parts().bytes()));

    EXPECT_EQ(grid.south, -90.0);
    EXPECT_EQ(grid.west, -180.0);
    EXPECT_EQ(grid.latitudeStep, 90.0);
    EXPECT_EQ(grid.longitudeStep, 90.0);
    EXPECT_EQ(grid.rows(), 3);
    EXPECT_EQ(grid.columns(), 4);
    EXPECT_EQ(grid.heights.at(0, 0), 0.0F);
    EXPECT_EQ(grid.heights.at(3, 0), 3.0F);
    EXPECT_EQ(grid.heights.at(0, 2), 20.0F);
    EXPECT_EQ(grid.heights.at(3, 2), -23.5F);
    EXPECT_EQ(grid.north(), 90.0);
    EXPECT_EQ(grid.east(), 90.0);
    EXPECT_TRUE(grid.wraps());
}

TEST_F(GtxFile, ReadsTheLayoutByteForByte)
{
    // One degree is 3ff0000000000000, two degrees 4000000000000000, 1.5 m is 3fc00000.
    std::string bytes("\x3f\xf0\0\0\0\0\0\0\x40\x00\0\0\0\0\0\0"
                      "\x40\x00\0\0\0\0\0\0\x3f\xf0\0\0\0\0\0\0"
                      "\0\0\0\x02\0\0\0\x03",
                      40);
    for (int i = 0; i < 6; ++i) bytes.append("\x3f\xc0\0\0", 4);

    const Grid grid = readGtx(write(bytes));

    const Grid expected{2.0, 1.0, 1.0, 2.0, Raster<float>(3, 2, std::vector<float>(6, 1.5F))};
    EXPECT_EQ(grid, expected);
}

TEST_F(GtxFile, AcceptsAGridThatRepeatsItsFirstColumn)
{
    Parts parts;
    parts.columns = 5;
    parts.heights.assign(15, 1.0F);

    EXPECT_EQ(readGtx(write(parts.bytes())).columns(), 5);
}

TEST_F(GtxFile, RefusesAMissingFile)
{
    const std::string name = (folder_ / "none.gtx").string();

    EXPECT_EQ(errorOf([&] { readGtx(name); }), MapError::about(name, "no such file").what());
}

TEST_F(GtxFile, RefusesADirectory)
{
    const std::string name = folder_.path().string();

    EXPECT_EQ(errorOf([&] { readGtx(name); }),
              MapError::about(name, "is a directory, not a GTX grid").what());
}

TEST_F(GtxFile, RefusesAPipeWithoutWaitingForItsWriter)
{
    ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);

    EXPECT_EQ(errorOf([&] { readGtx(path_); }),
              MapError::about(path_, "is not a regular file").what());
}

TEST_F(GtxFile, RefusesATruncatedHeader)
{
    EXPECT_EQ(complaint(""), "truncated: shorter than the 40 bytes of a GTX header");
    EXPECT_EQ(complaint(Parts().bytes().substr(0, 39)),
              "truncated: shorter than the 40 bytes of a GTX header");
}

TEST_F(GtxFile, RefusesATruncatedGrid)
{
    EXPECT_EQ(complaint(Parts().bytes().substr(0, 87)),
              "truncated: 3 x 4 samples take 88 bytes, the file has 87");
    EXPECT_EQ(complaint(Parts().bytes().substr(0, 40)),
              "truncated: 3 x 4 samples take 88 bytes, the file has 40");
}

TEST_F(GtxFile, RefusesTrailingBytes)
{
    EXPECT_EQ(complaint(Parts().bytes() + "x"),
              "trailing bytes: 3 x 4 samples take 88 bytes, the file has 89");
}

TEST_F(GtxFile, RefusesAbsurdCountsBeforeItAsksForMemory)
{
    Parts parts;
    parts.rows = parts.columns = 0xFFFFFFFFU;
    EXPECT_EQ(complaint(parts.bytes()),
              "the header claims an absurd size, 4294967295 x 4294967295 samples");

    parts.rows = 0;
    EXPECT_EQ(complaint(parts.bytes()), "the header claims an absurd size, 0 x 4294967295 samples");

    parts.rows = 3;
    parts.columns = 1;
    EXPECT_EQ(complaint(parts.bytes()), "the header claims an absurd size, 3 x 1 samples");

    parts.rows = parts.columns = 32768; // 4 GiB of samples, still to be believed
    EXPECT_EQ(complaint(parts.bytes()),
              "truncated: 32768 x 32768 samples take 4294967336 bytes, the file has 88");
}

TEST_F(GtxFile, RefusesAPositionThatIsNotFinite)
{
    for (const double bad : {kNan, kInfinity, -kInfinity})
        for (double Parts::* const field :
             {&Parts::south, &Parts::west, &Parts::latitudeStep, &Parts::longitudeStep})
        {
            Parts parts;
            parts.*field = bad;
            EXPECT_EQ(complaint(parts.bytes()), "the header holds a number that is not finite");
        }
}

TEST_F(GtxFile, RefusesStepsThatAreNotPositive)
{
    for (const double bad : {0.0, -0.0, -0.25})
        for (double Parts::* const field : {&Parts::latitudeStep, &Parts::longitudeStep})
        {
            Parts parts;
            parts.*field = bad;
            EXPECT_EQ(complaint(parts.bytes()), "the steps in the header are not positive");
        }
}

TEST_F(GtxFile, RefusesRowsBeyondThePole)
{
    Parts parts;
    parts.south = -90.5;
    EXPECT_EQ(complaint(parts.bytes()), "the rows reach beyond the pole");

    parts.south = -89.5;
    EXPECT_EQ(complaint(parts.bytes()), "the rows reach beyond the pole");
}

TEST_F(GtxFile, RefusesColumnsBeyondTheCircle)
{
    Parts parts;
    parts.longitudeStep = 121.0;
    EXPECT_EQ(complaint(parts.bytes()), "the columns go round the Earth more than once");

    parts.longitudeStep = 90.0;
    parts.west = 400.0;
    EXPECT_EQ(complaint(parts.bytes()), "the longitude in the header is beyond 360");
}

TEST_F(GtxFile, RefusesHeightsThatAreNotFinite)
{
    for (const double bad : {kNan, kInfinity, -kInfinity})
    {
        Parts parts;
        parts.heights[7] = static_cast<float>(bad);
        EXPECT_EQ(complaint(parts.bytes()), "sample 7 is not a finite number");
    }
}

TEST_F(GtxFile, RefusesHeightsThatNoGeoidHas)
{
    Parts parts;
    parts.heights[11] = -1000.5F;

    EXPECT_EQ(complaint(parts.bytes()), "sample 11 is no height of the geoid: -1000.500000 m");
}

} // namespace
} // namespace Maps
