#include "Harm.h"

ZELM_MODULE(harm)
{
    return Quorl::VManagedObject::remove(typeid(Quorl::VInputCreatorBase), "Good/first");
}
