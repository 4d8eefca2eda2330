#include <quorl/kit/Module.h>
#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>

#include <string>

/// Five creators, in a category that is called after the module that they stand in.
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
    const std::string& path = Quorl::VManagedObject::CurrentLoadModule;
    const std::string file = path.substr(path.rfind('/') + 1);
    return "Benchmark/" + file.substr(0, file.rfind('.')) + "/" + name;
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
