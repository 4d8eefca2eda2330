#include "GridObjects.h"

#include <quorl/kit/Module.h>
#include <quorl/kit/VCreator.h>

/// Grids of heights, and the fields that are made of them. A further kind of object is a class in
/// GridObjects.h, and a line here.
namespace Maps
{
namespace
{

using Quorl::VCreator;

VCreator<GridReader> reader("Grid/Reader", {.provides = {typeid(Grid)},
                                            .summary = "Reads a grid of heights from a file"});

VCreator<RegionSampler> region("Grid/Region", {.accepts = {typeid(Grid)},
                                               .provides = {typeid(Field)},
                                               .summary = "Lays a region out in pixels"});

VCreator<Smoother> smoothing("Grid/Smoothing", {.accepts = {typeid(Field)},
                                                .provides = {typeid(Field)},
                                                .summary = "Takes the finest detail away"});

VCreator<Hillshader> hillshade("Grid/Hillshade",
                               {.accepts = {typeid(Field)},
                                .provides = {typeid(Field), typeid(Light)},
                                .summary = "Lights heights as if they were mountains"});

VCreator<ContourTracer> contours("Grid/Contours", {.accepts = {typeid(Field)},
                                                   .provides = {typeid(ContourSet)},
                                                   .summary = "Finds lines of equal height"});

VCreator<FieldCombiner> arithmetic("Grid/Arithmetic",
                                   {.accepts = {typeid(Field)},
                                    .provides = {typeid(Field)},
                                    .summary = "Adds, subtracts or multiplies two fields"});

VCreator<FieldScaler> scaling("Grid/Scaling", {.accepts = {typeid(Field)},
                                               .provides = {typeid(Field)},
                                               .summary = "Multiplies by a number, adds another"});

VCreator<FieldStatistics> numbers("Grid/Statistics",
                                  {.accepts = {typeid(Field)},
                                   .summary = "Tells range, mean and deviation, by area"});

VCreator<ProfileSampler> profile("Grid/Profile",
                                 {.accepts = {typeid(Field)},
                                  .provides = {typeid(Profile)},
                                  .summary = "Samples a field along a great circle"});

} // namespace
} // namespace Maps

ZELM_MODULE(grid)
{
    initialization.title = "Grids of heights";
    initialization.author = "The Quorl authors";
    return true;
}
