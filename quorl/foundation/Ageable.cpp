#include <quorl/foundation/Ageable.h>

namespace Tolmen
{

// Constant-initialised: statics of any library may be aged before this one's initialisers run.
constinit Ageable Ageable::GlobalTime{1};
constinit Ageable Ageable::Ooooold{-1};

} // namespace Tolmen
