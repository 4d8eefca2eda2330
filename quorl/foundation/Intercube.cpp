#include <quorl/foundation/Intercube.h>

#include <quorl/foundation/FindOrNull.h>
#include <quorl/foundation/SteadyChange.h>

namespace Tolmen
{

Intercube::Intercube() = default;
Intercube::Intercube(const Intercube& other)
    : interfaces_(other.interfaces_ ? new Interfaces(*other.interfaces_) : nullptr)
{
}

Intercube& Intercube::operator=(const Intercube& other)
{
    if (this == &other) return *this;
    Intercube copied(other);
    interfaces_.swap(copied.interfaces_);
    return *this;
}

Intercube::~Intercube()
{
    endSteadily(interfaces_);
}

RefPtr<InterfaceBase> Intercube::findInterface(const std::type_info& domain) const
{
    return interfaces_ ? findOrNull(*interfaces_, domain) : RefPtr<InterfaceBase>();
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
    if (!interfaces_) interfaces_ = std::make_unique<Interfaces>();
    enterSteadily(*interfaces_, interface->getInterfaceDomain(), interface);
}

RefPtr<InterfaceBase> Intercube::createInterface(const std::type_info& /*domain*/) const
{
    return {};
}

} // namespace Tolmen
