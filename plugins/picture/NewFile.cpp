#include "NewFile.h"

#include <plugins/grid/MapError.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace Maps
{
namespace
{

/// Why a path must not be replaced: a pipe or a device, or a directory that the name happens to
/// hit. \return an empty text if it may.
std::string objectionTo(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status)) return "is a directory";
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        return "is not a regular file";
    return {};
}

} // namespace

NewFile::NewFile(const std::filesystem::path& target) : target_(target)
{
    if (const std::string objection = objectionTo(target); !objection.empty()) fail(objection);
    open();
}

NewFile::~NewFile()
{
    if (file_) std::fclose(file_);
    std::error_code ignored;
    if (!isDone_) std::filesystem::remove(path_, ignored);
}

/// Opened exclusively, so that neither a file nor a link that somebody else put there is followed
/// or overwritten.
void NewFile::open()
{
    constexpr int kAttempts = 100;
    for (int attempt = 0; attempt < kAttempts && !file_; ++attempt)
    {
        path_ = target_;
        path_ += '.' + std::to_string(attempt) + ".part";
        file_ = std::fopen(path_.string().c_str(), "wbx");
        if (!file_ && errno != EEXIST) break;
    }
    if (!file_) fail(systemReason(errno));
}

void NewFile::write(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size())
        fail(systemReason(errno));
}

/// Not before the stream is closed without an error is the file known to be whole: a full disk may
/// come to light as late as that.
void NewFile::takeThePlaceOfTheTarget()
{
    if (std::fclose(std::exchange(file_, nullptr)) != 0) fail(systemReason(errno));
    std::error_code error;
    std::filesystem::rename(path_, target_, error);
    if (error) fail(error.message());
    isDone_ = true;
}

void NewFile::fail(const std::string& reason) const
{
    throw MapError::about(target_, "cannot be written: " + reason);
}

std::string systemReason(int error)
{
    return std::generic_category().message(error);
}

} // namespace Maps
