#pragma once

#include <string>

namespace Maps
{

/// What is written over a picture, in UTF-8. An empty text takes no room.
struct Caption
{
    std::string title;
    std::string subtitle;
    std::string unit = "m"; ///< of the colour bar

    friend bool operator==(const Caption&, const Caption&) = default;
};

} // namespace Maps
