#include "PictureObjects.h"

#include "Annotation.h"
#include "Composition.h"
#include "ContourDrawing.h"
#include "Legend.h"
#include "PictureFile.h"
#include "PngFile.h"
#include "PpmFile.h"
#include "ProfilePlot.h"
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
    writePicture(frameMap(encode(map), shade.region, map_(request), caption), file_(request));
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

PictureAnnotator::PictureAnnotator(const std::string& wantedName, int givenPriority,
                                   const Quorl::RefPtr<Quorl::VCreationPreferences>& wanted)
    : VObject(wantedName, givenPriority, wanted), png_(new PictureSaver(".png", writePng)),
      ppm_(new PictureSaver(".ppm", writePpm))
{
    addSaver("PNG", png_);
    addSaver("PPM", ppm_);
}

bool PictureAnnotator::update(Quorl::VRequest& request, double /*precision*/)
{
    Annotation annotation{{title_(request), subtitle_(request), unit_(request)},
                          {},
                          paper_(request),
                          frame_(request)};
    if (bar_(request)) annotation.bar = map_(request);
    const Image picture = annotate(encode(picture_(request)), annotation);
    if (const std::string file = file_(request); !file.empty()) writePicture(picture, file);
    annotated_.set(request, decode(picture));
    png_->result = ppm_->result = picture;
    return true;
}

bool PictureComposer::update(Quorl::VRequest& request, double /*precision*/)
{
    const Arrangement arrangement{below_(request), gap_(request), decode(background_(request))};
    picture_.set(request, compose(first_(request), second_(request), arrangement));
    return true;
}

bool ProfilePlotter::update(Quorl::VRequest& request, double /*precision*/)
{
    const PlotLook look{width_(request), height_(request), unit_(request)};
    picture_.set(request, decode(plotProfile(profile_(request), look)));
    return true;
}

} // namespace Maps
