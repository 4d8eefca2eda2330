#include "Legend.h"

#include "FrameParts.h"

#include <algorithm>
#include <utility>

namespace Maps
{

namespace
{

constexpr Rgb kPaper{255, 255, 255};

/// Measures first, then draws from the outside inwards. Lengths are in pixels, those given as
/// numbers for a map of a million pixels.
class Frame
{
public:
    Frame(const Image& map, const Region& region, const ColourMap& colours, const Caption& caption)
        : map_(map), region_(region), sizes_(map.width(), map.height()), inks_(inksOn(kPaper)),
          labels_(Font::Weight::Regular, 15.5 * sizes_.scale),
          caption_(caption, sizes_, map.width()), bar_(colours, caption.unit, map.height(), sizes_),
          latitudes_(degreeTicks(region.south, region.north, ticksIn(map.height(), 74.0, sizes_))),
          longitudes_(degreeTicks(region.west, region.west + region.longitudeSpan(),
                                  ticksIn(map.width(), 100.0, sizes_)))
    {
        measure();
    }

    Image draw() const
    {
        Canvas canvas(width_, height_, inks_.paper);
        caption_.draw(canvas, left_, inks_);
        canvas.paste(left_, top_, map_);
        canvas.frame(left_, top_, map_.width(), map_.height(), sizes_.thickness, inks_.strong);
        drawLatitudes(canvas);
        drawLongitudes(canvas);
        bar_.draw(canvas, left_ + map_.width() + bar_.gap(), top_, inks_);
        return std::move(canvas).finish();
    }

private:
    void measure()
    {
        const double outer = 20.0 * sizes_.scale;
        double latitudeWidth = 0.0;
        for (const double value : latitudes_.values)
            latitudeWidth =
                std::max(latitudeWidth, labels_.width(latitudeLabel(value, latitudes_.step)));

        left_ =
            roundUp(outer + latitudeWidth + 5.0 * sizes_.scale) + sizes_.tick + sizes_.thickness;
        top_ = caption_.bottom();
        width_ = left_ + map_.width() + bar_.gap() + bar_.width();
        height_ = top_ + map_.height() + sizes_.thickness + sizes_.tick +
                  roundUp(6.0 * sizes_.scale + labels_.capitalHeight() + outer);
    }

    void drawLatitudes(Canvas& canvas) const
    {
        const double perDegree = map_.height() / region_.latitudeSpan();
        const int right = left_ + map_.width() + sizes_.thickness;
        const int outside = left_ - sizes_.thickness - sizes_.tick;
        for (const double value : latitudes_.values)
        {
            const int y = top_ + placedTick((region_.north - value) * perDegree, sizes_);
            canvas.fill(outside, y, sizes_.tick, sizes_.thickness, inks_.strong);
            canvas.fill(right, y, sizes_.tick / 2, sizes_.thickness, inks_.strong);
            const std::string label = latitudeLabel(value, latitudes_.step);
            labels_.draw(canvas, outside - 5.0 * sizes_.scale - labels_.width(label),
                         middledOn(y, labels_, sizes_), label, inks_.strong);
        }
    }

    void drawLongitudes(Canvas& canvas) const
    {
        const double perDegree = map_.width() / region_.longitudeSpan();
        const int bottom = top_ + map_.height() + sizes_.thickness;
        const int baseline =
            bottom + sizes_.tick + round(6.0 * sizes_.scale + labels_.capitalHeight());
        for (const double value : longitudes_.values)
        {
            const double offset = (value - region_.west) * perDegree;
            const int x = left_ + placedTick(offset, sizes_);
            canvas.fill(x, bottom, sizes_.thickness, sizes_.tick, inks_.strong);
            canvas.fill(x, top_ - sizes_.thickness - sizes_.tick / 2, sizes_.thickness,
                        sizes_.tick / 2, inks_.strong);
            const std::string label = longitudeLabel(value, longitudes_.step);
            labels_.draw(canvas, left_ + offset - 0.5 * labels_.width(label), baseline, label,
                         inks_.strong);
        }
    }

    const Image& map_;
    const Region& region_;
    const FrameSizes sizes_;
    const Inks inks_;
    const Font labels_;
    const CaptionBlock caption_;
    const ColourBar bar_;
    const Ticks latitudes_;
    const Ticks longitudes_;
    int left_ = 0; // the map's upper left corner in the picture
    int top_ = 0;
    int width_ = 0;
    int height_ = 0;
};

} // namespace

Image frameMap(const Image& map, const Region& region, const ColourMap& colours,
               const Caption& caption)
{
    checkRegion(region);
    if (map.isEmpty()) throw MapError("there is no map to frame");
    return Frame(map, region, colours, caption).draw();
}

} // namespace Maps
