#include "Annotation.h"

#include "FrameParts.h"

#include <utility>

namespace Maps
{

Image annotate(const Image& picture, const Annotation& annotation)
{
    if (picture.isEmpty()) throw MapError("there is no picture to annotate");
    const FrameSizes sizes(picture.width(), picture.height());
    const Inks inks = inksOn(annotation.paper);
    const CaptionBlock caption(annotation.caption, sizes, picture.width());
    std::optional<ColourBar> bar;
    if (annotation.bar)
        bar.emplace(*annotation.bar, annotation.caption.unit, picture.height(), sizes);

    const int left = sizes.outer + sizes.thickness;
    const int top = caption.bottom();
    const int right = left + picture.width();
    const int margin = sizes.thickness + sizes.outer;
    Canvas canvas(right + (bar ? bar->gap() + bar->width() : margin),
                  top + picture.height() + margin, annotation.paper);
    caption.draw(canvas, left, inks);
    canvas.paste(left, top, picture);
    if (annotation.hasFrame)
        canvas.frame(left, top, picture.width(), picture.height(), sizes.thickness, inks.strong);
    if (bar) bar->draw(canvas, right + bar->gap(), top, inks);
    return std::move(canvas).finish();
}

} // namespace Maps
