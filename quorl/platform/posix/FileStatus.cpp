#include <quorl/platform/FileStatus.h>

#include <sys/stat.h>

namespace Tolmen::Platform
{

FileStatus fileStatus(const std::string& path)
{
    struct stat record = {};
    if (::stat(path.c_str(), &record) != 0) return {};
    return {true, record.st_size, record.st_mtim.tv_sec, record.st_mtim.tv_nsec};
}

} // namespace Tolmen::Platform
