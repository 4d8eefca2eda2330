#include "PictureObjects.h"

#include <quorl/kit/Module.h>
#include <quorl/kit/VCreator.h>

/// Pictures of fields.
namespace Maps
{
namespace
{

using Quorl::VCreator;

VCreator<Colourer> colours("Picture/Colours", {.accepts = {typeid(Field)},
                                               .provides = {typeid(LinearImage), typeid(ColourMap)},
                                               .summary = "Colours heights"});

VCreator<PictureWriter> writer("Picture/Writer",
                               {.accepts = {typeid(LinearImage), typeid(ColourMap), typeid(Field),
                                            typeid(Light), typeid(ContourSet)},
                                .summary = "Composes a map and writes it to a PNG or PPM file"});

VCreator<PictureAnnotator>
    annotation("Picture/Annotation",
               {.accepts = {typeid(LinearImage), typeid(ColourMap)},
                .provides = {typeid(LinearImage)},
                .summary = "Adds title and colour bar, and writes a PNG or PPM file"});

VCreator<PictureComposer> composition("Picture/Composition",
                                      {.accepts = {typeid(LinearImage)},
                                       .provides = {typeid(LinearImage)},
                                       .summary = "Puts two pictures into one"});

VCreator<ProfilePlotter> plot("Picture/ProfilePlot",
                              {.accepts = {typeid(Profile)},
                               .provides = {typeid(LinearImage)},
                               .summary = "Plots values along a great circle"});

} // namespace
} // namespace Maps

ZELM_MODULE(picture)
{
    initialization.title = "Pictures";
    initialization.author = "The Quorl authors";
    return true;
}
