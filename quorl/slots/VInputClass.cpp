#include <quorl/slots/VInputClass.h>

#include <quorl/foundation/VGlobals.h>

namespace Quorl
{

int VInputClass::getClass(const std::string& name)
{
    VInputClass& classes = VGlobals::theGlobals().inputClasses;
    const auto known = classes.find(name);
    if (known != classes.end()) return known->second;
    const auto count = static_cast<std::int32_t>(classes.size());
    classes.emplace(name, count + 1);
    return count;
}

} // namespace Quorl
