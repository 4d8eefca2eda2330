#include "VolumeObjects.h"

#include <quorl/kit/Module.h>
#include <quorl/kit/VCreator.h>

/// Volumes, and the surfaces in them. A further kind of object is a class in VolumeObjects.h, and a
/// line here.
namespace Volumes
{
namespace
{

using Quorl::VCreator;

VCreator<VolumeReader> reader("Volume/Reader", {.provides = {typeid(Volume)},
                                                .summary = "Reads a volume from a NIfTI file"});

VCreator<VolumeSlicer> slice("Volume/Slice",
                             {.accepts = {typeid(Volume)},
                              .provides = {typeid(Raster<float>), typeid(LinearImage)},
                              .summary = "Cuts a volume across an axis, and shows it in grey"});

VCreator<VolumeThreshold> limits("Volume/Threshold",
                                 {.accepts = {typeid(Volume)},
                                  .provides = {typeid(Volume)},
                                  .summary = "Replaces values that are not in a range"});

VCreator<VolumeSmoother> smoothing("Volume/Smoothing", {.accepts = {typeid(Volume)},
                                                        .provides = {typeid(Volume)},
                                                        .summary = "Takes the finest detail away"});

VCreator<SurfaceFinder> isosurfaces("Volume/Isosurface",
                                    {.accepts = {typeid(Volume)},
                                     .provides = {typeid(Mesh)},
                                     .summary = "Finds the surface of one value"});

VCreator<SurfaceRenderer> rendering("Volume/Rendering",
                                    {.accepts = {typeid(Mesh)},
                                     .provides = {typeid(LinearImage)},
                                     .summary = "Looks at a surface with a camera"});

} // namespace
} // namespace Volumes

ZELM_MODULE(volume)
{
    initialization.title = "Volumes and their surfaces";
    initialization.author = "The Quorl authors";
    return true;
}
