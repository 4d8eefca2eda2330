#include "GridFile.h"

#include "AsciiGridFile.h"
#include "GtxFile.h"

#include <cctype>
#include <string>

namespace Maps
{
namespace
{

std::string suffixOf(const std::filesystem::path& path)
{
    std::string suffix = path.extension().string();
    for (char& letter : suffix)
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return suffix;
}

} // namespace

Grid readGrid(const std::filesystem::path& path)
{
    return suffixOf(path) == ".asc" ? readAsciiGrid(path) : readGtx(path);
}

bool isGridFile(const std::filesystem::path& path)
{
    const std::string suffix = suffixOf(path);
    return suffix == ".asc" || suffix == ".gtx";
}

} // namespace Maps
