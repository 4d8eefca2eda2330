#include <quorl/objects/VConnectionValidatorList.h>

#include <quorl/foundation/Watch.h>
#include <quorl/objects/VConnectionValidator.h>

namespace Quorl
{

VConnectionValidatorList::VConnectionValidatorList() = default;
VConnectionValidatorList::~VConnectionValidatorList() = default;

void VConnectionValidatorList::insertConnectionValidator(
    const WeakPtr<VConnectionValidator>& validator)
{
    Tolmen::Watch::shapeChanges();
    validators_.insert(validator);
}

void VConnectionValidatorList::taintConnectionValidators(long object) const
{
    for (const WeakPtr<VConnectionValidator>& validator : validators_)
        if (validator) validator->Taint = static_cast<std::int32_t>(object);
}

void VConnectionValidatorList::taintFromRequest(const VRequest& request)
{
    for (const WeakPtr<VConnectionValidator>& validator : validators_)
        if (validator) validator->taintFromRequest(request);
}

} // namespace Quorl
