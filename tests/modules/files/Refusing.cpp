#include <quorl/kit/Module.h>
#include <quorl/kit/VCreator.h>

#include <stdexcept>
#include <utility>

/// Registers a creator, and then does not want to be used: says so, throws, forgets to tell what it
/// was built against, or accepts the first time alone.
namespace
{

class Refused final : public Quorl::VObject
{
public:
    using VObject::VObject;
};

Quorl::VCreator<Refused> refused("Refusing/" ZELM_MODULE_STEM);

} // namespace

#if defined(REFUSES)
ZELM_MODULE(refusing)
{
    return false;
}
#elif defined(THROWS)
ZELM_MODULE(throwing)
{
    throw std::runtime_error("no");
}
#elif defined(FICKLE)
ZELM_MODULE(fickle)
{
    static bool isFirst = true;
    return std::exchange(isFirst, false);
}
#else
ZELM_PLUGIN_STRINGS("");
extern "C" __attribute__((visibility("default"))) bool
initialise(Quorl::VInitialization*) __asm__(ZELM_INIT_PREFIX "incompatible");
bool initialise(Quorl::VInitialization* /*initialization*/)
{
    return true;
}
#endif
