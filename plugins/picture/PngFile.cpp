#include "PngFile.h"

#include <png.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>
#include <utility>

namespace Maps
{

namespace
{

static_assert(sizeof(Rgb) == 3, "rows of Rgb are handed to libpng as bytes");

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& reason)
{
    std::string text = "cannot be written: ";
    text += reason;
    throw MapError::about(path, text);
}

std::string systemReason(int error)
{
    return std::generic_category().message(error);
}

/// A new file beside the target, removed at the end unless it has taken the target's place.
class TemporaryFile
{
public:
    explicit TemporaryFile(const std::filesystem::path& target) : target_(target) { open(); }

    ~TemporaryFile()
    {
        if (file_) std::fclose(file_);
        std::error_code ignored;
        if (!isDone_) std::filesystem::remove(path_, ignored);
    }

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::FILE* stream() { return file_; }

    /// Not before the stream is closed without an error is the file known to be whole: a full disk
    /// may come to light as late as that.
    void takeThePlaceOfTheTarget()
    {
        if (std::fclose(std::exchange(file_, nullptr)) != 0) fail(target_, systemReason(errno));
        std::error_code error;
        std::filesystem::rename(path_, target_, error);
        if (error) fail(target_, error.message());
        isDone_ = true;
    }

private:
    /// Opened exclusively, so that neither a file nor a link that somebody else put there is
    /// followed or overwritten.
    void open()
    {
        constexpr int kAttempts = 100;
        for (int attempt = 0; attempt < kAttempts && !file_; ++attempt)
        {
            path_ = target_;
            path_ += '.' + std::to_string(attempt) + ".part";
            file_ = std::fopen(path_.string().c_str(), "wbx");
            if (!file_ && errno != EEXIST) break;
        }
        if (!file_) fail(target_, systemReason(errno));
    }

    std::filesystem::path target_;
    std::filesystem::path path_;
    std::FILE* file_ = nullptr;
    bool isDone_ = false;
};

/// A pipe or a device must not be replaced, nor a directory that the name happens to hit.
void checkTarget(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status)) fail(path, "is a directory");
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        fail(path, "is not a regular file");
}

/// libpng's description of a picture. Its simple interface reports by values, so that no exception
/// of C++ meets a long jump of C.
struct PngImage : png_image
{
    PngImage() : png_image{} { version = PNG_IMAGE_VERSION; }
    ~PngImage() { png_image_free(this); }
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;
};

} // namespace

void writePng(const Image& image, const std::filesystem::path& path)
{
    if (image.isEmpty()) fail(path, "there is no picture");
    checkTarget(path);

    TemporaryFile file(path);
    errno = 0;
    PngImage png;
    png.width = static_cast<png_uint_32>(image.width());
    png.height = static_cast<png_uint_32>(image.height());
    png.format = PNG_FORMAT_RGB;
    if (png_image_write_to_stdio(&png, file.stream(), 0, image.samples().data(), 0, nullptr) == 0)
        fail(path, errno ? systemReason(errno) : png.message);
    file.takeThePlaceOfTheTarget();
}

} // namespace Maps
