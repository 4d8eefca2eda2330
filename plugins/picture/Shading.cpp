#include "Shading.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace Maps
{

LinearImage shadeColours(const LinearImage& colours, const Field& shade, double levelShade,
                         double contrast)
{
    if (colours.width() != shade.width() || colours.height() != shade.height())
        throw MapError("the shade is not of the picture's size");
    if (!(contrast >= 0.0 && contrast <= 2.0))
        throw MapError("the contrast of the shade is not between 0 and 2");
    if (colours.isEmpty()) return colours;

    const auto ambient = static_cast<float>(1.0 - contrast * levelShade);
    const auto strength = static_cast<float>(contrast);
    std::vector<LinearRgb> pixels(colours.samples().begin(), colours.samples().end());
    for (std::size_t i = 0; i < pixels.size(); ++i)
    {
        const float light = std::max(0.0F, ambient + strength * shade.values.samples()[i]);
        pixels[i].red *= light;
        pixels[i].green *= light;
        pixels[i].blue *= light;
    }
    return {colours.width(), colours.height(), std::move(pixels)};
}

} // namespace Maps
