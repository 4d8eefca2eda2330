#include "network/Steps.h"

#include "ContourDrawing.h"
#include "GtxFile.h"
#include "Legend.h"
#include "PngFile.h"
#include "Resampling.h"
#include "Shading.h"
#include "Smoothing.h"

#include <array>
#include <cstdio>

namespace Geoid
{

bool GridReader::update(Quorl::VRequest& request, double /*precision*/)
{
    grid_.set(request, readGtx(file_(request)));
    return true;
}

bool RegionSampler::update(Quorl::VRequest& request, double /*precision*/)
{
    const Region region{west_(request), east_(request), south_(request), north_(request)};
    heights_.set(request, resample(grid_(request), region, width_(request), height_(request)));
    return true;
}

bool Smoother::update(Quorl::VRequest& request, double /*precision*/)
{
    smoothed_.set(request, smooth(heights_(request), sigma_(request)));
    return true;
}

bool Hillshader::update(Quorl::VRequest& request, double /*precision*/)
{
    const Light light{azimuth_(request), altitude_(request), exaggeration_(request)};
    shade_.set(request, hillshade(heights_(request), light));
    light_.set(request, light);
    return true;
}

bool Colourer::update(Quorl::VRequest& request, double /*precision*/)
{
    const ColourMap map(low_(request), high_(request));
    colours_.set(request, map.paint(heights_(request)));
    map_.set(request, map);
    return true;
}

bool ContourTracer::update(Quorl::VRequest& request, double /*precision*/)
{
    contours_.set(request, traceContours(heights_(request), interval_(request)));
    return true;
}

bool PictureWriter::update(Quorl::VRequest& request, double /*precision*/)
{
    const Field shade = shade_(request);
    const LinearImage shaded = shadeColours(
        colours_(request), shade, shadeOfLevelGround(light_(request)), contrast_(request));
    const LinearImage map = drawContours(shaded, contours_(request), {});
    const Caption caption{title_(request), subtitle(request)};
    writePng(frameMap(encode(map), shade.region, map_(request), caption), file_(request));
    return true;
}

std::string PictureWriter::subtitle(const Quorl::VRequest& request) const
{
    const Light light = light_(request);
    std::array<char, 256> text{};
    std::snprintf(
        text.data(), text.size(),
        "contours every %g m, every fifth heavier · light from %g°, %g° high, heights × %g · "
        "smoothed by %g°",
        contours_(request).interval, light.azimuth, light.altitude, light.exaggeration,
        sigma_(request));
    return text.data();
}

} // namespace Geoid
