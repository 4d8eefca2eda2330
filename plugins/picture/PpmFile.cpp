#include "PpmFile.h"

#include "NewFile.h"
#include "PictureFile.h"

#include <string>

namespace Maps
{

void writePpm(const Image& image, const std::filesystem::path& path)
{
    checkPicture(image, path);
    NewFile file(path);
    file.write("P6\n" + std::to_string(image.width()) + " " + std::to_string(image.height()) +
               "\n255\n");
    std::string row;
    for (int y = 0; y < image.height(); ++y)
    {
        row.clear();
        for (const Rgb& pixel : image.row(y))
            for (const std::uint8_t channel : {pixel.red, pixel.green, pixel.blue})
                row += static_cast<char>(channel);
        file.write(row);
    }
    file.takeThePlaceOfTheTarget();
}

} // namespace Maps
