#include <quorl/services/VScriptParameters.h>

#include <quorl/foundation/SteadyChange.h>
#include <quorl/foundation/SteadyWalk.h>
#include <quorl/services/VScriptTypedValue.h>
#include <quorl/services/VScriptValue.h>
#include <quorl/values/VValueTrait.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VScriptParameters>;
} // namespace Tolmen

namespace Quorl
{

VScriptParameters::iterator::~iterator() = default;

VScriptParameters::VScriptParameters() : table_(new Table) {}
VScriptParameters::~VScriptParameters() = default;

bool VScriptParameters::append(const RefPtr<VScriptValue>& value)
{
    return insert(VValueTrait<int>::Text(static_cast<int>(table_->size()) + 1), value);
}

bool VScriptParameters::insert(const string& name, const RefPtr<VScriptValue>& value)
{
    Tolmen::enterSteadily(*table_, name, value);
    return true;
}

RefPtr<VScriptValue> VScriptParameters::find(const string& name) const
{
    const auto entry = table_->find(name);
    return entry == table_->end() ? RefPtr<VScriptValue>() : entry->second;
}

RefPtr<VScriptValue> VScriptParameters::find(const string& first, const string& second) const
{
    const RefPtr<VScriptValue> preferred = find(first);
    return preferred ? preferred : find(second);
}

RefPtr<VScriptTypedValue> VScriptParameters::get(const string& first, const string& second,
                                                 const std::type_info& firstType,
                                                 const std::type_info& secondType) const
{
    const RefPtr<VScriptValue> found = find(first, second);
    return found ? found->get(firstType, secondType) : RefPtr<VScriptTypedValue>();
}

int VScriptParameters::iterate(iterator& visitor)
{
    const RefPtr<VScriptParameters> held = Tolmen::heldIfOwned(self);
    int count = 0;
    Tolmen::walkSteadily(*table_, [&](const string& name, const RefPtr<VScriptValue>& value) {
        if (!visitor.apply(name, value)) return false;
        ++count;
        return true;
    });
    return count;
}

} // namespace Quorl
