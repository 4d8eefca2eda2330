#include "PngFile.h"
#include <plugins/grid/tests/Support.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <png.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <vector>

namespace Maps
{
namespace
{

using QuorlTest::bytesOf;

/// A picture of which each pixel is different from its neighbours, and hard to compress.
Image noise(int width, int height)
{
    std::vector<Rgb> pixels;
    unsigned state = 12345;
    for (int i = 0; i < width * height; ++i)
    {
        state = state * 1664525U + 1013904223U;
        pixels.push_back({static_cast<std::uint8_t>(state >> 24U),
                          static_cast<std::uint8_t>(state >> 16U),
                          static_cast<std::uint8_t>(state >> 8U)});
    }
    return {width, height, std::move(pixels)};
}

Image read(const std::filesystem::path& path)
{
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&png, path.c_str()) == 0) return {};
    png.format = PNG_FORMAT_RGB;
    std::vector<Rgb> pixels(std::size_t{png.width} * png.height);
    if (png_image_finish_read(&png, nullptr, pixels.data(), 0, nullptr) == 0) return {};
    return {static_cast<int>(png.width), static_cast<int>(png.height), std::move(pixels)};
}

/// Makes every file end at `bytes`, as a full disk would: writing beyond fails.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit limit{bytes, former_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &former_);
        std::signal(SIGXFSZ, formerHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit former_{};
    void (*formerHandler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

TEST(PngFile, GivesBackThePictureItWrote)
{
    const QuorlTest::TemporaryFolder folder;
    const Image image = noise(37, 23);

    writePng(image, folder / "a.png");

    EXPECT_EQ(read(folder / "a.png"), image);
    EXPECT_EQ(folder.count(), 1U);
}

TEST(PngFile, WritesTheSameBytesForTheSamePicture)
{
    const QuorlTest::TemporaryFolder folder;

    writePng(noise(37, 23), folder / "a.png");
    writePng(noise(37, 23), folder / "b.png");

    EXPECT_EQ(bytesOf(folder / "a.png"), bytesOf(folder / "b.png"));
    EXPECT_FALSE(bytesOf(folder / "a.png").empty());
}

TEST(PngFile, ReplacesAFormerPicture)
{
    const QuorlTest::TemporaryFolder folder;
    writePng(noise(5, 5), folder / "a.png");

    writePng(noise(6, 4), folder / "a.png");

    EXPECT_EQ(read(folder / "a.png"), noise(6, 4));
    EXPECT_EQ(folder.count(), 1U);
}

TEST(PngFile, ReportsAMissingFolder)
{
    const QuorlTest::TemporaryFolder folder;
    const std::filesystem::path path = folder / "none" / "a.png";

    EXPECT_EQ(errorOf([&] { writePng(noise(5, 5), path); }),
              MapError::about(path, "cannot be written: No such file or directory").what());
    EXPECT_EQ(folder.count(), 0U);
}

TEST(PngFile, ReportsADirectoryInItsPlace)
{
    const QuorlTest::TemporaryFolder folder;
    const std::filesystem::path path = folder / "a.png";
    std::filesystem::create_directory(path);

    EXPECT_EQ(errorOf([&] { writePng(noise(5, 5), path); }),
              MapError::about(path, "cannot be written: is a directory").what());
    EXPECT_EQ(folder.count(), 1U);
}

TEST(PngFile, WritesToADeviceAndDoesNotReplaceIt)
{
    writePng(noise(5, 5), "/dev/null");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));

    EXPECT_EQ(errorOf([] { writePng(noise(5, 5), "/dev/full"); }),
              "'/dev/full': cannot be written: No space left on device");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST(PngFile, LeavesNothingBehindOnAFullDisk)
{
    const QuorlTest::TemporaryFolder folder;
    const std::filesystem::path path = folder / "a.png";

    std::string error;
    {
        const FileSizeLimit limit(10000);
        error = errorOf([&] { writePng(noise(200, 200), path); });
    }

    EXPECT_EQ(error, MapError::about(path, "cannot be written: File too large").what());
    EXPECT_EQ(folder.count(), 0U);
}

TEST(PngFile, KeepsTheFormerPictureOnAFullDisk)
{
    const QuorlTest::TemporaryFolder folder;
    const std::filesystem::path path = folder / "a.png";
    writePng(noise(5, 5), path);

    {
        const FileSizeLimit limit(100); // so little that nothing fails before the file is closed
        EXPECT_NE(errorOf([&] { writePng(noise(20, 20), path); }), "");
    }

    EXPECT_EQ(read(path), noise(5, 5));
    EXPECT_EQ(folder.count(), 1U);
}

TEST(PngFile, RefusesAnEmptyPicture)
{
    const QuorlTest::TemporaryFolder folder;
    const std::filesystem::path path = folder / "a.png";

    EXPECT_EQ(errorOf([&] { writePng({}, path); }),
              MapError::about(path, "cannot be written: there is no picture").what());
    EXPECT_EQ(folder.count(), 0U);
}

} // namespace
} // namespace Maps
