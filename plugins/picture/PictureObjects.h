#pragma once

#include "PictureValues.h"

#include <quorl/kit/TypedSlot.h>

/// From fields to a picture in a file.
///
/// What an object cannot do is thrown as MapError, through all requests that wait for it.
namespace Maps
{

using Quorl::InputSlot;
using Quorl::OutputSlot;
using Quorl::perContext;

/// Colours the heights.
class Colourer final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Field> heights_{*this, "heights", {}, perContext()};
    const InputSlot<double> low_{*this, "low", -110.0, perContext()};
    const InputSlot<double> high_{*this, "high", 90.0, perContext()};
    const OutputSlot<LinearImage> colours_{*this, "colours"};
    const OutputSlot<ColourMap> map_{*this, "map"};
};

/// Puts colours, shade and contours together, frames them, and writes the picture.
class PictureWriter final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    std::string subtitle(const Quorl::VRequest& request) const;

    const InputSlot<LinearImage> colours_{*this, "colours", {}, perContext()};
    const InputSlot<ColourMap> map_{*this, "map", {}, perContext()};
    const InputSlot<Field> shade_{*this, "shade", {}, perContext()};
    const InputSlot<Light> light_{*this, "light", {}, perContext()};
    const InputSlot<ContourSet> contours_{*this, "contours", {}, perContext()};
    const InputSlot<double> sigma_{*this, "sigma"}; // the smoothing's, to be told
    const InputSlot<double> contrast_{*this, "contrast", 0.8};
    const InputSlot<std::string> title_{*this, "title", {}, perContext()};
    const InputSlot<std::string> unit_{*this, "unit", "m", perContext()};
    const InputSlot<std::string> file_{*this, "file", {}, perContext()};
};

} // namespace Maps
