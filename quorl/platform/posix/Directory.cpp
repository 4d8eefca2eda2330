#include <quorl/platform/Directory.h>

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h> // NOLINT(modernize-deprecated-headers): renameat2
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>

namespace Tolmen::Platform
{
namespace
{

struct CloseDirectory
{
    void operator()(DIR* directory) const { ::closedir(directory); }
};

} // namespace

std::vector<std::string> namesIn(const std::string& directory, const std::string& suffix)
{
    std::vector<std::string> names;
    const std::unique_ptr<DIR, CloseDirectory> open(::opendir(directory.c_str()));
    if (!open) return names;
    while (const dirent* const entry = ::readdir(open.get()))
        if (std::string_view(entry->d_name).ends_with(suffix)) names.emplace_back(entry->d_name);
    std::ranges::sort(names); // the system's order changes from run to run
    return names;
}

bool renameFile(const std::string& from, const std::string& to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // Not every file system can; a second link is refused as well if the name is taken.
    return ::link(from.c_str(), to.c_str()) == 0 && ::unlink(from.c_str()) == 0;
}

} // namespace Tolmen::Platform
