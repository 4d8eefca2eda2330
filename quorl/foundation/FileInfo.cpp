#include <quorl/foundation/FileInfo.h>

#include <quorl/platform/FileStatus.h>

#include <tuple>

namespace Tolmen
{

bool Filetime::operator>(const Filetime& other) const
{
    return std::tie(seconds, nanoseconds) > std::tie(other.seconds, other.nanoseconds);
}

FileInfo::FileInfo(const std::string& path)
{
    const Platform::FileStatus status = Platform::fileStatus(path);
    invalid = !status.exists;
    modified.seconds = status.modifiedSeconds;
    modified.nanoseconds = status.modifiedNanoseconds;
}

} // namespace Tolmen
