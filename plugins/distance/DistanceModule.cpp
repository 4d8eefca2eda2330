#include "DistanceObject.h"

#include <quorl/kit/Module.h>
#include <quorl/kit/VCreator.h>

/// Distances on the Earth, found in the background.
namespace Maps
{
namespace
{

Quorl::VCreator<DistanceToLevel>
    distance("Grid/Distance", {.accepts = {typeid(Field)},
                               .provides = {typeid(Field)},
                               .summary = "Tells how far it is to a line of equal height"});

} // namespace
} // namespace Maps

ZELM_MODULE(distance)
{
    initialization.title = "Distances";
    initialization.author = "The Quorl authors";
    return true;
}
