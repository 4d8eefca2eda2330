#include "Harm.h"

static Quorl::VCreator<Harmless> creator("Harm/A");
