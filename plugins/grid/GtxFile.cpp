#include "GtxFile.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

namespace Maps
{

namespace
{

constexpr std::size_t kHeaderBytes = 40;
constexpr std::size_t kSampleBytes = 4;

struct Header
{
    double south;
    double west;
    double latitudeStep;
    double longitudeStep;
    std::uint32_t rows;
    std::uint32_t columns;
};

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& reason)
{
    throw MapError::about(path, reason);
}

template <class Word>
Word bigEndian(const char* bytes)
{
    Word word = 0;
    for (std::size_t i = 0; i < sizeof(Word); ++i)
        word = static_cast<Word>((word << 8U) | static_cast<unsigned char>(bytes[i]));
    return word;
}

double bigEndianDouble(const char* bytes)
{
    return std::bit_cast<double>(bigEndian<std::uint64_t>(bytes));
}

std::uintmax_t sizeOfRegularFile(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) fail(path, "no such file");
    if (error) fail(path, error.message());
    if (std::filesystem::is_directory(status)) fail(path, "is a directory, not a GTX grid");
    if (!std::filesystem::is_regular_file(status)) fail(path, "is not a regular file");
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error) fail(path, error.message());
    return size;
}

Header parseHeader(const std::array<char, kHeaderBytes>& bytes)
{
    return {bigEndianDouble(&bytes[0]),           bigEndianDouble(&bytes[8]),
            bigEndianDouble(&bytes[16]),          bigEndianDouble(&bytes[24]),
            bigEndian<std::uint32_t>(&bytes[32]), bigEndian<std::uint32_t>(&bytes[36])};
}

void checkPosition(const Header& header, const std::filesystem::path& path)
{
    for (const double value :
         {header.south, header.west, header.latitudeStep, header.longitudeStep})
        if (!std::isfinite(value)) fail(path, "the header holds a number that is not finite");
    if (header.latitudeStep <= 0.0 || header.longitudeStep <= 0.0)
        fail(path, "the steps in the header are not positive");
    if (std::abs(header.west) > 360.0) fail(path, "the longitude in the header is beyond 360");
}

/// The product of two 32-bit counts cannot overflow 64 bits, so the counts need no bound of their
/// own before they are multiplied.
void checkCounts(const Header& header, std::uintmax_t fileSize, const std::filesystem::path& path)
{
    const std::string counts =
        std::to_string(header.rows) + " x " + std::to_string(header.columns) + " samples";
    const std::uint64_t samples = std::uint64_t{header.rows} * header.columns;
    if (header.rows < 2 || header.columns < 2 || samples > kMostSamples)
        fail(path, "the header claims an absurd size, " + counts);

    const std::uintmax_t expected = kHeaderBytes + samples * kSampleBytes;
    const std::string sizes = counts + " take " + std::to_string(expected) +
                              " bytes, the file has " + std::to_string(fileSize);
    if (fileSize < expected) fail(path, "truncated: " + sizes);
    if (fileSize > expected) fail(path, "trailing bytes: " + sizes);
}

/// A grid may touch the pole and may repeat its first column at its end, and no more.
void checkExtent(const Header& header, const std::filesystem::path& path)
{
    const double slackLatitude = 1e-6 * header.latitudeStep;
    const double north = header.south + header.latitudeStep * (header.rows - 1.0);
    if (header.south < -90.0 - slackLatitude || north > 90.0 + slackLatitude)
        fail(path, "the rows reach beyond the pole");
    const double span = header.longitudeStep * (header.columns - 1.0);
    if (span > 360.0 + 1e-6 * header.longitudeStep)
        fail(path, "the columns go round the Earth more than once");
}

std::vector<float> decodeHeights(const std::vector<char>& bytes, const std::filesystem::path& path)
{
    std::vector<float> heights(bytes.size() / kSampleBytes);
    for (std::size_t i = 0; i < heights.size(); ++i)
    {
        const float height =
            std::bit_cast<float>(bigEndian<std::uint32_t>(&bytes[i * kSampleBytes]));
        if (!std::isfinite(height))
            fail(path, "sample " + std::to_string(i) + " is not a finite number");
        if (!isHeightOfGeoid(height))
            fail(path, "sample " + std::to_string(i) +
                           " is no height of the geoid: " + std::to_string(height) + " m");
        heights[i] = height;
    }
    return heights;
}

} // namespace

Grid readGtx(const std::filesystem::path& path)
{
    const std::uintmax_t fileSize = sizeOfRegularFile(path);
    if (fileSize < kHeaderBytes) fail(path, "truncated: shorter than the 40 bytes of a GTX header");

    std::ifstream file(path, std::ios::binary);
    std::array<char, kHeaderBytes> headerBytes{};
    if (!file || !file.read(headerBytes.data(), headerBytes.size())) fail(path, "cannot be read");

    const Header header = parseHeader(headerBytes);
    checkPosition(header, path);
    checkCounts(header, fileSize, path);
    checkExtent(header, path);

    std::vector<char> bytes(static_cast<std::size_t>(fileSize) - kHeaderBytes);
    if (!file.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        fail(path, "cannot be read to its end");

    return {header.west, header.south, header.longitudeStep, header.latitudeStep,
            Raster<float>(static_cast<int>(header.columns), static_cast<int>(header.rows),
                          decodeHeights(bytes, path))};
}

} // namespace Maps
