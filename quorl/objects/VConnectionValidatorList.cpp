#include <quorl/objects/VConnectionValidatorList.h>

#include <quorl/foundation/Watch.h>
#include <quorl/objects/VConnectionValidator.h>

#include <algorithm>

namespace Quorl
{

VConnectionValidatorList::VConnectionValidatorList() = default;
VConnectionValidatorList::VConnectionValidatorList(const VConnectionValidatorList&) = default;
VConnectionValidatorList::~VConnectionValidatorList() = default;

VConnectionValidatorList& VConnectionValidatorList::operator=(const VConnectionValidatorList& other)
{
    const Tolmen::Watch::ShapeChange change;
    validators_ = other.validators_;
    return *this;
}

void VConnectionValidatorList::insertConnectionValidator(
    const WeakPtr<VConnectionValidator>& validator)
{
    Tolmen::Watch::shapeChanges();
    validators_.insert(validator);
    if (validator) validator->isEntered_ = true;
}

bool VConnectionValidatorList::hasConnectionValidators() const
{
    return std::ranges::any_of(validators_,
                               [](const auto& validator) { return static_cast<bool>(validator); });
}

void VConnectionValidatorList::taintConnectionValidators(long object) const
{
    showConnectionValidators([&](VConnectionValidator& validator) {
        validator.Taint = static_cast<std::int32_t>(object);
    });
}

void VConnectionValidatorList::taintFromRequest(const VRequest& request)
{
    showConnectionValidators(
        [&](VConnectionValidator& validator) { validator.taintFromRequest(request); });
}

} // namespace Quorl
