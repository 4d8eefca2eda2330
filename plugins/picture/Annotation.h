#pragma once

#include "Caption.h"
#include "ColourMap.h"
#include "Image.h"

#include <optional>

namespace Maps
{

/// What is put around a picture.
struct Annotation
{
    Caption caption;
    std::optional<ColourMap> bar; ///< the colours and range that the picture was painted with
    Rgb paper{255, 255, 255};     ///< inks are light on dark paper
    bool hasFrame = true;         ///< a line around the picture

    friend bool operator==(const Annotation&, const Annotation&) = default;
};

/// Puts a caption above a picture, a line around it, and a colour bar with numbers and unit to the
/// right; letters and margins grow with the picture, which is copied pixel for pixel.
/// \throws MapError if the picture is empty, or a font is missing.
Image annotate(const Image& picture, const Annotation& annotation);

} // namespace Maps
