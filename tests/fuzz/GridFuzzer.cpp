#include "AsciiGridFile.h"
#include "GtxFile.h"
#include "MapError.h"

#include <tests/fuzz/MemoryFile.h>

#include <cmath>

namespace
{

/// What is accepted is whole, and lies on the Earth.
void check(const Maps::Grid& grid)
{
    if (grid.heights.width() < 1 || grid.heights.height() < 1) std::abort();
    for (const double number : {grid.west, grid.south, grid.longitudeStep, grid.latitudeStep})
        if (!std::isfinite(number)) std::abort();
    for (int row = 0; row < grid.heights.height(); ++row)
        for (int column = 0; column < grid.heights.width(); ++column)
            if (!std::isfinite(grid.heights.at(column, row))) std::abort();
}

} // namespace

/// Any bytes are read in both formats, or refused in one line that names the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string path = QuorlFuzz::pathOf(data, size);
    for (Maps::Grid (*const read)(const std::filesystem::path&) :
         {&Maps::readGtx, &Maps::readAsciiGrid})
    {
        try
        {
            check(read(path));
        }
        catch (const Maps::MapError& error)
        {
            if (!std::string(error.what()).starts_with("'" + path + "': ")) std::abort();
        }
    }
    return 0;
}
