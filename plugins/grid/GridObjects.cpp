#include "GridObjects.h"

#include "GridFile.h"
#include "Resampling.h"
#include "Smoothing.h"
#include "Statistics.h"

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

bool FieldCombiner::update(Quorl::VRequest& request, double /*precision*/)
{
    result_.set(request, combine(left_(request), right_(request), operation_(request)));
    return true;
}

bool FieldScaler::update(Quorl::VRequest& request, double /*precision*/)
{
    scaled_.set(request, scale(field_(request), factor_(request), offset_(request)));
    return true;
}

bool FieldStatistics::update(Quorl::VRequest& request, double /*precision*/)
{
    const Statistics found = statistics(field_(request));
    least_.set(request, found.least);
    greatest_.set(request, found.greatest);
    mean_.set(request, found.mean);
    deviation_.set(request, found.deviation);
    missing_.set(request, found.missing);
    return true;
}

bool ProfileSampler::update(Quorl::VRequest& request, double /*precision*/)
{
    const Place from{fromLatitude_(request), fromLongitude_(request)};
    const Place to{toLatitude_(request), toLongitude_(request)};
    profile_.set(request, sampleProfile(field_(request), from, to, samples_(request)));
    return true;
}

} // namespace Maps
