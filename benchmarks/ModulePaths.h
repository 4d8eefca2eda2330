#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace QuorlBenchmark
{

/// The paths of all files of a directory, as a scan of it makes them, in their order.
inline std::vector<std::string> pathsIn(const std::string& directory)
{
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        paths.push_back(directory + "/" + entry.path().filename().string());
    std::ranges::sort(paths);
    return paths;
}

} // namespace QuorlBenchmark
