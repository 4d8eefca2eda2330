#include "NewFile.h"

#include <plugins/grid/MapError.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace Maps
{
namespace
{

/// Where links lead to, also if nothing is there.
std::filesystem::path behindLinks(std::filesystem::path path)
{
    constexpr int kMostLinks = 40; // as many as the system follows
    std::error_code failure;
    for (int links = 0; links < kMostLinks && std::filesystem::is_symlink(path, failure); ++links)
        path = path.parent_path() / std::filesystem::read_symlink(path, failure);
    return path;
}

} // namespace

NewFile::NewFile(const std::filesystem::path& target) : target_(target)
{
    struct stat facts = {};
    if (::stat(target.c_str(), &facts) == 0)
        mode_ = facts.st_mode;
    else if (errno != ENOENT)
        failOfSystem(); // what stands there may be nothing to be replaced
    if (S_ISDIR(mode_)) fail("is a directory");
    if (isReplaced())
        openBeside();
    else
        file_ = std::fopen(target.c_str(), "wb");
    if (!file_) failOfSystem();
}

NewFile::~NewFile()
{
    if (file_) std::fclose(file_);
    if (folder_.empty()) return;
    ::unlink(path_.c_str());
    ::rmdir(folder_.c_str());
}

bool NewFile::isReplaced() const
{
    return mode_ == 0 || S_ISREG(mode_);
}

/// The name is free in a folder that nobody else knows; the mode is that of the user's new files.
void NewFile::openBeside()
{
    std::string folder = (behindLinks(target_).parent_path() / ".part-XXXXXX").string();
    if (!::mkdtemp(folder.data())) failOfSystem();
    path_ = folder + "/new";
    folder_ = std::move(folder);
    file_ = std::fopen(path_.c_str(), "wbx");
    if (!file_) ::rmdir(folder_.c_str());
}

void NewFile::write(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) failOfSystem();
}

/// Not before the stream is closed without an error is the file known to be whole: a full disk may
/// come to light as late as that.
void NewFile::takeThePlaceOfTheTarget()
{
    constexpr mode_t kPermissions = 07777;
    if (S_ISREG(mode_) && ::fchmod(::fileno(file_), mode_ & kPermissions) != 0) failOfSystem();
    if (std::fclose(std::exchange(file_, nullptr)) != 0) failOfSystem();
    if (!isReplaced()) return;
    if (::rename(path_.c_str(), behindLinks(target_).c_str()) != 0) failOfSystem();
}

void NewFile::fail(const std::string& reason) const
{
    throw MapError::about(target_, "cannot be written: " + reason);
}

void NewFile::failOfSystem() const
{
    fail(systemReason(errno));
}

std::string systemReason(int error)
{
    return std::generic_category().message(error);
}

} // namespace Maps
