#pragma once

#include "network/Values.h"

#include <quorl/kit/TypedSlot.h>

/// The seven steps from a grid file to a picture. Angles are in degrees, heights in metres.
///
/// What a step cannot do is thrown as GeoidError, through all requests that wait for it.
namespace Geoid
{

using Quorl::InputSlot;
using Quorl::OutputSlot;
using Quorl::perContext;

/// Reads a grid file.
class GridReader final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<std::string> file_{*this, "file"};
    const OutputSlot<Grid> grid_{*this, "grid"};
};

/// Lays a region out in pixels.
class RegionSampler final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Grid> grid_{*this, "grid", {}, perContext()};
    const InputSlot<double> west_{*this, "west", -180.0, perContext()};
    const InputSlot<double> east_{*this, "east", 180.0, perContext()};
    const InputSlot<double> south_{*this, "south", -90.0, perContext()};
    const InputSlot<double> north_{*this, "north", 90.0, perContext()};
    const InputSlot<int> width_{*this, "width", 1440, perContext()};  // pixels
    const InputSlot<int> height_{*this, "height", 720, perContext()}; // pixels
    const OutputSlot<Field> heights_{*this, "heights"};
};

/// Takes the finest detail away.
class Smoother final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Field> heights_{*this, "heights", {}, perContext()};
    const InputSlot<double> sigma_{*this, "sigma", 0.5};
    const OutputSlot<Field> smoothed_{*this, "smoothed"};
};

/// Lights the heights as if they were mountains.
class Hillshader final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Field> heights_{*this, "heights", {}, perContext()};
    const InputSlot<double> azimuth_{*this, "azimuth", 315.0, perContext()};
    const InputSlot<double> altitude_{*this, "altitude", 45.0, perContext()};
    const InputSlot<double> exaggeration_{*this, "exaggeration", 20000.0, perContext()};
    const OutputSlot<Field> shade_{*this, "shade"};
    const OutputSlot<Light> light_{*this, "light"};
};

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

/// Finds the lines of equal height.
class ContourTracer final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Field> heights_{*this, "heights", {}, perContext()};
    const InputSlot<double> interval_{*this, "interval", 10.0, perContext()};
    const OutputSlot<ContourSet> contours_{*this, "contours"};
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
    const InputSlot<std::string> file_{*this, "file", {}, perContext()};
};

} // namespace Geoid
