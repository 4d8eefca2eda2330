#include "Replacement.h"

#include "NetworkError.h"
#include "WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <system_error>

namespace Zelm
{
namespace
{

namespace fs = std::filesystem;

/// Where links lead to, also if nothing is there.
fs::path behindLinks(fs::path path)
{
    constexpr int kMostLinks = 40; // as many as the system follows
    std::error_code failure;
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, failure); ++links)
        path = path.parent_path() / fs::read_symlink(path, failure);
    return path;
}

/// Without memory the folder stays.
void removeWithAll(const std::string& folder) noexcept
try
{
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}
catch (const std::bad_alloc&)
{
}

bool isReplaced(mode_t mode)
{
    return mode == 0 || S_ISREG(mode);
}

} // namespace

Replacement::Replacement(const std::string& target) : target_(target), place_(behindLinks(target))
{
    struct stat facts = {};
    if (::stat(target.c_str(), &facts) == 0)
        mode_ = facts.st_mode;
    else if (errno != ENOENT)
        fail(errno); // what stands there may be nothing to be replaced
    if (S_ISDIR(mode_)) fail(EISDIR);
    const fs::path parent = isReplaced(mode_) ? place_.parent_path() : fs::temp_directory_path();
    folder_ = (parent / ".zelm-XXXXXX").string();
    path_ = folder_ + "/" + place_.filename().string();
    if (!::mkdtemp(folder_.data())) fail(errno);
    path_.replace(0, folder_.size(), folder_); // without memory, as nobody removes the folder yet
}

Replacement::~Replacement()
{
    if (descriptor_ >= 0) ::close(descriptor_);
    ::unlink(path_.c_str());
    if (::rmdir(folder_.c_str()) != 0) removeWithAll(folder_);
}

void Replacement::write(std::string_view bytes)
{
    constexpr mode_t kForAll = 0666; // less what the user's mask takes
    descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kForAll);
    if (descriptor_ < 0) fail(errno);
    writeAll(bytes);
}

void Replacement::takePlace()
{
    if (!isReplaced(mode_)) return copyTo(target_);
    if (descriptor_ < 0) descriptor_ = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor_ < 0) fail(errno);
    constexpr mode_t kPermissions = 07777;
    if (mode_ != 0 && ::fchmod(descriptor_, mode_ & kPermissions) != 0) fail(errno);
    if (::fsync(descriptor_) != 0) fail(errno);
    if (::rename(path_.c_str(), place_.c_str()) != 0) fail(errno);
}

void Replacement::copyTo(const std::string& device)
{
    const std::string bytes = readWholeFile(path_);
    if (descriptor_ >= 0) ::close(descriptor_);
    descriptor_ = ::open(device.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    if (descriptor_ < 0) fail(errno);
    writeAll(bytes);
}

void Replacement::writeAll(std::string_view bytes) const
{
    while (!bytes.empty())
    {
        const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) fail(errno);
        if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void Replacement::fail(int reason) const
{
    throw NetworkError(target_, {}, "", "",
                       std::string("this cannot be written: ") + std::strerror(reason));
}

} // namespace Zelm
