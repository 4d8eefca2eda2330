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

/// Adds, subtracts or multiplies two fields, pixel by pixel.
class FieldCombiner final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Field> left_{*this, "left", {}, perContext()};
    const InputSlot<Field> right_{*this, "right", {}, perContext()};
    const InputSlot<Operation> operation_{*this, "operation", Operation::Add, perContext()};
    const OutputSlot<Field> result_{*this, "result"};
};

/// Multiplies a field by a number, and adds another.
class FieldScaler final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Field> field_{*this, "field", {}, perContext()};
    const InputSlot<double> factor_{*this, "factor", 1.0, perContext()};
    const InputSlot<double> offset_{*this, "offset", 0.0, perContext()};
    const OutputSlot<Field> scaled_{*this, "scaled"};
};

/// Tells what the values of a field are like as a whole, weighted by area.
class FieldStatistics final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Field> field_{*this, "field", {}, perContext()};
    const OutputSlot<double> least_{*this, "least"};
    const OutputSlot<double> greatest_{*this, "greatest"};
    const OutputSlot<double> mean_{*this, "mean"};
    const OutputSlot<double> deviation_{*this, "deviation"};
    const OutputSlot<double> missing_{*this, "missing"}; // share of the area, 0 to 1
};

/// Samples a field along a great circle.
class ProfileSampler final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Field> field_{*this, "field", {}, perContext()};
    const InputSlot<double> fromLatitude_{*this, "fromLatitude", 0.0, perContext()};
    const InputSlot<double> fromLongitude_{*this, "fromLongitude", 0.0, perContext()};
    const InputSlot<double> toLatitude_{*this, "toLatitude", 0.0, perContext()};
    const InputSlot<double> toLongitude_{*this, "toLongitude", 90.0, perContext()};
    const InputSlot<int> samples_{*this, "samples", 500, perContext()};
    const OutputSlot<Profile> profile_{*this, "profile"};
};

} // namespace Maps
