#include "PpmFile.h"
#include "PictureFile.h"
#include <plugins/grid/tests/Support.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <fstream>

namespace Maps
{
namespace
{

using QuorlTest::bytesOf;

const Image kTwoPixels(2, 1, {{1, 2, 3}, {200, 10, 255}});

TEST(PpmFile, HasAHeaderAndThreeBytesAPixel)
{
    const QuorlTest::TemporaryFolder folder;

    writePpm(kTwoPixels, folder / "a.ppm");

    EXPECT_EQ(bytesOf(folder / "a.ppm"), "P6\n2 1\n255\n\x01\x02\x03\xC8\x0A\xFF");
    EXPECT_EQ(folder.count(), 1U);
}

TEST(PpmFile, LeavesWhatWasThereIfItCannotBeWritten)
{
    const QuorlTest::TemporaryFolder folder;
    std::ofstream(folder / "a.ppm") << "former";

    EXPECT_EQ(errorOf([&] { writePpm(Image(), folder / "a.ppm"); }),
              "'" + (folder / "a.ppm").string() + "': cannot be written: there is no picture");
    EXPECT_EQ(errorOf([&] { writePpm(kTwoPixels, folder.path()); }),
              "'" + folder.path().string() + "': cannot be written: is a directory");
    EXPECT_EQ(bytesOf(folder / "a.ppm"), "former");
}

TEST(PictureFile, IsPpmOrPngByItsSuffix)
{
    const QuorlTest::TemporaryFolder folder;

    writePicture(kTwoPixels, folder / "a.ppm");
    writePicture(kTwoPixels, folder / "a.png");

    EXPECT_EQ(bytesOf(folder / "a.ppm").substr(0, 2), "P6");
    EXPECT_EQ(bytesOf(folder / "a.png").substr(0, 4), "\x89PNG");
}

} // namespace
} // namespace Maps
