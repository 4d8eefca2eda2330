#include "GridObjects.h"

#include "GridFile.h"
#include "Resampling.h"
#include "Smoothing.h"

namespace Maps
{

bool GridReader::update(Quorl::VRequest& request, double /*precision*/)
{
    grid_.set(request, readGrid(file_(request)));
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

bool ContourTracer::update(Quorl::VRequest& request, double /*precision*/)
{
    contours_.set(request, traceContours(heights_(request), interval_(request)));
    return true;
}

} // namespace Maps
