#include "PictureObjects.h"

#include "ContourDrawing.h"
#include "Legend.h"
#include "PngFile.h"
#include "Shading.h"

#include <array>
#include <cstdio>

namespace Maps
{

bool Colourer::update(Quorl::VRequest& request, double /*precision*/)
{
    const ColourMap map(low_(request), high_(request));
    colours_.set(request, map.paint(heights_(request)));
    map_.set(request, map);
    return true;
}

bool PictureWriter::update(Quorl::VRequest& request, double /*precision*/)
{
    const Field shade = shade_(request);
    const LinearImage shaded = shadeColours(
        colours_(request), shade, shadeOfLevelGround(light_(request)), contrast_(request));
    const LinearImage map = drawContours(shaded, contours_(request), {});
    const Caption caption{title_(request), subtitle(request), unit_(request)};
    writePng(frameMap(encode(map), shade.region, map_(request), caption), file_(request));
    return true;
}

std::string PictureWriter::subtitle(const Quorl::VRequest& request) const
{
    const Light light = light_(request);
    std::array<char, 256> text{};
    std::snprintf(
        text.data(), text.size(),
        "contours every %g %s, every fifth heavier · light from %g°, %g° high, heights × %g · "
        "smoothed by %g°",
        contours_(request).interval, unit_(request).c_str(), light.azimuth, light.altitude,
        light.exaggeration, sigma_(request));
    return text.data();
}

} // namespace Maps
