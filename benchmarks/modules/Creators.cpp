#include <quorl/kit/Module.h>
#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>

#include <string>

/// Five creators, which are called after the module that they stand in.
namespace
{

class Plain final : public Quorl::VObject
{
public:
    using VObject::VObject;
    const Quorl::InputSlot<double> in{*this, "in"};
    const Quorl::OutputSlot<double> out{*this, "out"};
};

std::string key(const char* name)
{
    return Quorl::VManagedObject::CurrentLoadModule + "/" + name;
}

Quorl::VCreator<Plain> first(key("First"));
Quorl::VCreator<Plain> second(key("Second"));
Quorl::VCreator<Plain> third(key("Third"));
Quorl::VCreator<Plain> fourth(key("Fourth"));
Quorl::VCreator<Plain> fifth(key("Fifth"));

} // namespace

ZELM_PLUGIN_STRINGS(ZELM_MODULE_DIRECTORY);

extern "C" bool initialiseModule(Quorl::VInitialization* initialization)
{
    return initialization->IsCompatible("ZELM_API_VERSION");
}
