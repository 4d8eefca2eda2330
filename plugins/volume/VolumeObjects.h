#pragma once

#include "VolumeValues.h"

#include <plugins/picture/ResultSaver.h>

#include <quorl/kit/TypedSlot.h>

/// From a file of a volume to slices, surfaces, and pictures of these. Lengths are in millimetres,
/// angles in degrees, values of voxels in the unit of the file.
///
/// What an object cannot do is thrown as MapError, through all requests that wait for it.
namespace Volumes
{

using Maps::LinearImage;
using Maps::Raster;
using Maps::Rgb;
using Quorl::InputSlot;
using Quorl::OutputSlot;
using Quorl::perContext;

using MeshSaver = Maps::ResultSaver<Mesh>;

/// Reads a NIfTI file.
class VolumeReader final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<std::string> file_{*this, "file"};
    const OutputSlot<Volume> volume_{*this, "volume"};
};

/// Cuts a volume, and shows the values in grey.
class VolumeSlicer final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Volume> volumeIn_{*this, "volume", {}, perContext()};
    const InputSlot<Axis> axis_{*this, "axis", Axis::Z, perContext()};
    const InputSlot<double> position_{*this, "position", 0.0, perContext()}; // mm
    const InputSlot<double> step_{*this, "step", 1.0, perContext()};         // mm a pixel
    const InputSlot<double> low_{*this, "low", 0.0, perContext()};           // black
    const InputSlot<double> high_{*this, "high", 255.0, perContext()};       // white
    const OutputSlot<Raster<float>> values_{*this, "values"};
    const OutputSlot<LinearImage> picture_{*this, "picture"};
};

/// Replaces what is not in a range.
class VolumeThreshold final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Volume> volumeIn_{*this, "volume", {}, perContext()};
    const InputSlot<double> low_{*this, "low", 0.0, perContext()};
    const InputSlot<double> high_{*this, "high", 1e9, perContext()};
    const InputSlot<double> outside_{*this, "outside", 0.0, perContext()};
    const OutputSlot<Volume> kept_{*this, "kept"};
};

/// Takes noise and the finest detail away.
class VolumeSmoother final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Volume> volumeIn_{*this, "volume", {}, perContext()};
    const InputSlot<double> sigma_{*this, "sigma", 1.0}; // mm, in [0, 50]
    const OutputSlot<Volume> smoothed_{*this, "smoothed"};
};

/// Finds the surface of one value. It can be saved as PLY and OBJ: what the last update found, in
/// whichever context that was.
class SurfaceFinder final : public Quorl::VObject
{
public:
    SurfaceFinder(const std::string& wantedName, int givenPriority,
                  const Quorl::RefPtr<Quorl::VCreationPreferences>& wanted);
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Volume> volumeIn_{*this, "volume", {}, perContext()};
    const InputSlot<double> level_{*this, "level", 50.0, perContext()};
    const InputSlot<int> parts_{*this, "parts", 0, perContext()}; // the largest; 0 for all
    const OutputSlot<Mesh> surface_{*this, "surface"};
    const Quorl::RefPtr<MeshSaver> ply_;
    const Quorl::RefPtr<MeshSaver> obj_;
};

/// Looks at a surface with a camera. For the ranges see Camera.h and Rendering.h.
class SurfaceRenderer final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Mesh> surface_{*this, "surface", {}, perContext()};
    const InputSlot<double> azimuth_{*this, "azimuth", 0.0, perContext()};
    const InputSlot<double> elevation_{*this, "elevation", 0.0, perContext()};
    const InputSlot<double> roll_{*this, "roll", 0.0, perContext()};
    const InputSlot<double> fieldOfView_{*this, "fieldOfView", 20.0, perContext()};
    const InputSlot<double> zoom_{*this, "zoom", 1.0, perContext()};
    const InputSlot<double> lampAzimuth_{*this, "lampAzimuth", -35.0, perContext()};
    const InputSlot<double> lampElevation_{*this, "lampElevation", 40.0, perContext()};
    const InputSlot<double> ambient_{*this, "ambient", 0.25, perContext()};
    const InputSlot<double> gloss_{*this, "gloss", 0.2, perContext()};
    const InputSlot<double> occlusion_{*this, "occlusion", 0.6, perContext()};
    const InputSlot<Rgb> colour_{*this, "colour", {226, 190, 172}, perContext()};
    const InputSlot<Rgb> background_{*this, "background", {255, 255, 255}, perContext()};
    const InputSlot<int> width_{*this, "width", 900, perContext()};   // pixels
    const InputSlot<int> height_{*this, "height", 900, perContext()}; // pixels
    const OutputSlot<LinearImage> picture_{*this, "picture"};
};

} // namespace Volumes
