#pragma once

#include <string>
#include <vector>

namespace Zelm
{

/// What all commands have in common.
struct Settings
{
    std::vector<std::string> folders; ///< of modules, searched ahead of the others
    std::string cache;                ///< the file of the cache; empty means the usual place
    int verbosity = 0;                ///< of the walks
    bool asJson = false;
};

} // namespace Zelm
