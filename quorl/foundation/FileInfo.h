#pragma once

#include <quorl/foundation/Export.h>

#include <cstdint>
#include <string>

namespace Tolmen
{

/// When a file was last changed, since 1 January 1970 UTC.
class TOLMEN_API Filetime
{
public:
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0; ///< 0 to 999999999, on top of the seconds

    /// \return whether this time is later.
    bool operator>(const Filetime& other) const;
};

/// What the file system knew of a file when this was made.
class TOLMEN_API FileInfo
{
public:
    explicit FileInfo(const std::string& path = std::string());

    bool invalid = true; ///< the file could not be examined
    Filetime modified;
};

} // namespace Tolmen
