#include "AsciiGridFile.h"

#include "Grid.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Maps
{
namespace
{

constexpr std::size_t kBytesOfACell = 2; // a digit and a blank, at the least

std::string readWhole(const std::filesystem::path& path)
{
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(path, failure);
    if (std::filesystem::is_directory(status)) throw MapError::about(path, "it is a folder");
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw MapError::about(path, "it is not a regular file");
    std::ifstream file(path, std::ios::binary);
    if (!file) throw MapError::about(path, "it cannot be opened");
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The words of a text, one by one.
class Words
{
public:
    Words(const std::filesystem::path& path, std::string_view text) : path_(path), left_(text) {}

    bool atEnd()
    {
        while (!left_.empty() && isBlank(left_.front())) left_.remove_prefix(1);
        return left_.empty();
    }

    std::string_view next()
    {
        if (atEnd()) fail("it ends early");
        std::size_t length = 0;
        while (length < left_.size() && !isBlank(left_[length])) ++length;
        const std::string_view word = left_.substr(0, length);
        left_.remove_prefix(length);
        return word;
    }

    double number(const std::string& what)
    {
        const std::string_view word = next();
        double value = 0.0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(value))
            fail(what + " is no number: " + std::string(word));
        return value;
    }

    /// Passes over a keyword, if it is one of these. \return which.
    std::optional<std::string> keyword(const std::vector<std::string>& wanted)
    {
        const std::string_view before = left_;
        std::string word(next());
        for (char& letter : word)
            letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
        for (const std::string& candidate : wanted)
            if (word == candidate) return word;
        left_ = before;
        return std::nullopt;
    }

    std::string expect(const std::vector<std::string>& wanted)
    {
        const auto found = keyword(wanted);
        if (!found) fail("it has no " + wanted.front() + " where that belongs");
        return *found;
    }

    [[noreturn]] void fail(const std::string& reason) const
    {
        throw MapError::about(path_, reason);
    }

private:
    static bool isBlank(char letter)
    {
        return std::isspace(static_cast<unsigned char>(letter)) != 0;
    }

    const std::filesystem::path& path_;
    std::string_view left_;
};

int count(Words& words, const std::string& name)
{
    words.expect({name});
    const double value = words.number(name);
    if (value < 1 || value > 1e9 || value != std::floor(value)) words.fail(name + " is no count");
    return static_cast<int>(value);
}

/// What is given of the first cell: its corner, or its middle.
struct Origin
{
    double given;
    double cellsToMiddle;
    double middle(double step) const { return given + cellsToMiddle * step; }
};

Origin origin(Words& words, const std::string& corner, const std::string& center)
{
    const bool isCorner = words.expect({corner, center}) == corner;
    return {words.number(corner), isCorner ? 0.5 : 0.0};
}

std::vector<float> readCells(Words& words, const Grid& grid, int columns, int rows,
                             const std::optional<double>& noData)
{
    std::vector<float> cells(sampleCount(columns, rows));
    for (int row = rows - 1; row >= 0; --row)
        for (int column = 0; column < columns; ++column)
        {
            const double height = words.number("a height");
            if (noData && height == *noData)
                words.fail("there is no height at " +
                           std::to_string(grid.west + column * grid.longitudeStep) + ", " +
                           std::to_string(grid.south + row * grid.latitudeStep));
            if (!isHeightOfGeoid(height))
                words.fail("this is no height of the geoid: " + std::to_string(height) + " m");
            cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                  static_cast<std::size_t>(column)] = static_cast<float>(height);
        }
    return cells;
}

} // namespace

Grid readAsciiGrid(const std::filesystem::path& path)
{
    const std::string text = readWhole(path);
    Words words(path, text);
    const int columns = count(words, "ncols");
    const int rows = count(words, "nrows");
    Grid grid;
    const Origin west = origin(words, "xllcorner", "xllcenter");
    const Origin south = origin(words, "yllcorner", "yllcenter");
    words.expect({"cellsize"});
    grid.longitudeStep = grid.latitudeStep = words.number("cellsize");
    if (!(grid.longitudeStep > 0.0)) words.fail("cellsize is not positive");
    grid.west = west.middle(grid.longitudeStep);
    grid.south = south.middle(grid.latitudeStep);
    std::optional<double> noData;
    if (words.keyword({"nodata_value"})) noData = words.number("nodata_value");

    const auto cells = static_cast<unsigned long long>(columns) * static_cast<unsigned>(rows);
    if (cells > text.size() / kBytesOfACell + 1) words.fail("it ends early");
    if (grid.south < -90.0 || grid.south + (rows - 1) * grid.latitudeStep > 90.0 ||
        (columns - 1) * grid.longitudeStep > 360.0)
        words.fail("its coordinates are not on the Earth");
    grid.heights = Raster<float>(columns, rows, readCells(words, grid, columns, rows, noData));
    if (!words.atEnd()) words.fail("it goes on behind the last height");
    return grid;
}

} // namespace Maps
