#include <quorl/foundation/Intercube.h>

#include <quorl/foundation/FindOrNull.h>

namespace Tolmen
{

Intercube::Intercube() = default;
Intercube::Intercube(const Intercube& other) = default;
Intercube& Intercube::operator=(const Intercube& other) = default;
Intercube::~Intercube() = default;

RefPtr<InterfaceBase> Intercube::findInterface(const std::type_info& domain) const
{
    if (interfaces_.empty()) return {};
    return findOrNull(interfaces_, domain);
}

RefPtr<InterfaceBase> Intercube::getInterface(const std::type_info& domain)
{
    if (const RefPtr<InterfaceBase> present = findInterface(domain)) return present;
    const RefPtr<InterfaceBase> made = createInterface(domain);
    if (made) addInterface(made);
    return made;
}

void Intercube::addInterface(const RefPtr<InterfaceBase>& interface) const
{
    interfaces_[interface->getInterfaceDomain()] = interface;
}

RefPtr<InterfaceBase> Intercube::createInterface(const std::type_info& /*domain*/) const
{
    return {};
}

} // namespace Tolmen
