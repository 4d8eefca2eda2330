#include "network/Steps.h"

#include <quorl/kit/VCreator.h>

/// What makes the steps: found by its key, as "Grid/Region". A further kind of object is a class in
/// Steps.h, and a line here.
namespace Geoid
{
namespace
{

using Quorl::VCreator;

VCreator<GridReader> reader("Grid/Reader", {.provides = {typeid(Grid)}});

VCreator<RegionSampler> region("Grid/Region",
                               {.accepts = {typeid(Grid)}, .provides = {typeid(Field)}});

VCreator<Smoother> smoothing("Grid/Smoothing",
                             {.accepts = {typeid(Field)}, .provides = {typeid(Field)}});

VCreator<Hillshader> hillshade("Grid/Hillshade", {.accepts = {typeid(Field)},
                                                  .provides = {typeid(Field), typeid(Light)}});

VCreator<Colourer> colours("Picture/Colours",
                           {.accepts = {typeid(Field)},
                            .provides = {typeid(LinearImage), typeid(ColourMap)}});

VCreator<ContourTracer> contours("Grid/Contours",
                                 {.accepts = {typeid(Field)}, .provides = {typeid(ContourSet)}});

VCreator<PictureWriter> picture("Picture/Writer",
                                {.accepts = {typeid(LinearImage), typeid(ColourMap), typeid(Field),
                                             typeid(Light), typeid(ContourSet)}});

} // namespace
} // namespace Geoid
