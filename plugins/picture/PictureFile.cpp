#include "PictureFile.h"

#include "PngFile.h"
#include "PpmFile.h"

namespace Maps
{

void writePicture(const Image& image, const std::filesystem::path& path)
{
    if (path.extension() == ".ppm")
        writePpm(image, path);
    else
        writePng(image, path);
}

void checkPicture(const Image& image, const std::filesystem::path& path)
{
    if (image.isEmpty()) throw MapError::about(path, "cannot be written: there is no picture");
}

} // namespace Maps
