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
                                .summary = "Composes a map and writes it to a PNG file"});

} // namespace
} // namespace Maps

ZELM_MODULE(picture)
{
    initialization.title = "Pictures";
    initialization.author = "The Quorl authors";
    return true;
}
