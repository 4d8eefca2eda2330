#include <quorl/objects/VObjectAge.h>

#include <quorl/slots/VSlotContainer.h>

namespace Quorl
{

VObjectAge::VObjectAge() = default;
VObjectAge::~VObjectAge() = default;

Ageable& VObjectAge::operator()(const WeakPtr<VSlotContainer>& container)
{
    return try_emplace(container, Ageable::Ooooold).first->second;
}

Ageable& VObjectAge::operator()(const VSlotContainer& container)
{
    const auto known = find(container.self);
    return known != end() ? known->second : (*this)(WeakPtr<VSlotContainer>(&container));
}

} // namespace Quorl
