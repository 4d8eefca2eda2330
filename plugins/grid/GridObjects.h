#pragma once

#include "GridValues.h"

#include <quorl/kit/TypedSlot.h>

/// From a grid file to fields over a region. Angles are in degrees, heights in metres.
///
/// What an object cannot do is thrown as MapError, through all requests that wait for it.
namespace Maps
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

} // namespace Maps
