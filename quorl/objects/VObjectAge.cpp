#include <quorl/objects/VObjectAge.h>

#include <quorl/slots/VSlotContainer.h>

namespace Quorl
{

VObjectAge::VObjectAge() = default;
VObjectAge::~VObjectAge() = default;

Ageable& VObjectAge::operator()(const WeakPtr<VSlotContainer>& container)
{
    if (Ageable* const known = index_.find(container.referer)) return *known;
    Ageable& age = try_emplace(container, Ageable::Ooooold).first->second;
    index_.insert(container.referer, &age);
    return age;
}

Ageable& VObjectAge::operator()(const VSlotContainer& container)
{
    Ageable* const known = index_.find(container.self.referer);
    return known ? *known : (*this)(WeakPtr<VSlotContainer>(&container));
}

} // namespace Quorl
