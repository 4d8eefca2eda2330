#pragma once

#include <quorl/foundation/Export.h>

#include <cstdint>
#include <string>

namespace Tolmen::Platform
{

/// What the file system says of a file.
struct FileStatus
{
    bool exists = false;                  ///< false also if the file could not be examined
    std::int64_t size = 0;                ///< bytes
    std::int64_t modifiedSeconds = 0;     ///< since 1 January 1970 UTC
    std::int64_t modifiedNanoseconds = 0; ///< on top of the seconds
};

TOLMEN_API FileStatus fileStatus(const std::string& path);

} // namespace Tolmen::Platform
