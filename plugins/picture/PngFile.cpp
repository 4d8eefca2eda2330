#include "PngFile.h"

#include "NewFile.h"
#include "PictureFile.h"

#include <png.h>

#include <cerrno>

namespace Maps
{

namespace
{

static_assert(sizeof(Rgb) == 3, "rows of Rgb are handed to libpng as bytes");

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
    checkPicture(image, path);
    NewFile file(path);
    errno = 0;
    PngImage png;
    png.width = static_cast<png_uint_32>(image.width());
    png.height = static_cast<png_uint_32>(image.height());
    png.format = PNG_FORMAT_RGB;
    if (png_image_write_to_stdio(&png, file.stream(), 0, image.samples().data(), 0, nullptr) == 0)
        file.fail(errno ? systemReason(errno) : png.message);
    file.takeThePlaceOfTheTarget();
}

} // namespace Maps
