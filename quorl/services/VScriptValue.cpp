#include <quorl/services/VScriptValue.h>

#include <quorl/foundation/SteadyChange.h>
#include <quorl/foundation/SteadyWalk.h>
#include <quorl/services/VScriptTypedValue.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VScriptValue>;
} // namespace Tolmen

namespace Quorl
{

VScriptValue::iterator::~iterator() = default;

VScriptValue::VScriptValue() : table_(new Table) {}

VScriptValue::VScriptValue(const std::type_info& type, const RefPtr<VScriptTypedValue>& value)
    : VScriptValue()
{
    insert(type, value);
}

VScriptValue::VScriptValue(const std::type_info& type, const string& text)
    : VScriptValue(type, RefPtr<VScriptTypedValue>(new VScriptTypedValue(text)))
{
}

VScriptValue::~VScriptValue() = default;

void VScriptValue::insert(const std::type_info& type, const RefPtr<VScriptTypedValue>& value)
{
    Tolmen::enterSteadily(*table_, type, value);
}

void VScriptValue::remove(const std::type_info& type)
{
    const auto ended = table_->extract(type);
}

bool VScriptValue::hasType(const std::type_info& type) const
{
    return table_->contains(type);
}

unsigned long long VScriptValue::polymorphism() const
{
    return table_->size();
}

RefPtr<VScriptTypedValue> VScriptValue::getUnique() const
{
    return table_->size() == 1 ? table_->begin()->second : RefPtr<VScriptTypedValue>();
}

RefPtr<VScriptTypedValue> VScriptValue::get(const std::type_info& type) const
{
    const auto entry = table_->find(type);
    return entry == table_->end() ? RefPtr<VScriptTypedValue>() : entry->second;
}

RefPtr<VScriptTypedValue> VScriptValue::get(const std::type_info& first,
                                            const std::type_info& second) const
{
    const RefPtr<VScriptTypedValue> preferred = get(first);
    return preferred ? preferred : get(second);
}

int VScriptValue::iterate(iterator& visitor)
{
    const RefPtr<VScriptValue> held = Tolmen::heldIfOwned(self);
    int count = 0;
    Tolmen::walkSteadily(*table_,
                         [&](const Tolmen::TypeInfo& type, const RefPtr<VScriptTypedValue>& value) {
                             if (!value) return true;
                             if (!visitor.apply(type.get(), *value)) return false;
                             ++count;
                             return true;
                         });
    return count;
}

} // namespace Quorl
