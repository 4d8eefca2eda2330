#include <quorl/slots/TypedSlotCreator.h>

#include <quorl/foundation/FindOrNull.h>
#include <quorl/foundation/TypeInfo.h>
#include <quorl/foundation/Typename.h>
#include <quorl/slots/VSlot.h>

#include <map>

namespace Tolmen
{
template class ReferenceBase<Quorl::TypedSlotCreator>;
} // namespace Tolmen

namespace Quorl
{

struct TypedSlotCreator::InternalTypeCreatorAccessory
{
    using TypeTable = std::map<Tolmen::TypeInfo, WeakPtr<TypedSlotCreator>>;
    using NameTable = std::map<string, WeakPtr<TypedSlotCreator>>;

    static TypeTable& byType()
    {
        static auto& table = *new TypeTable; // creators withdraw until the very end
        return table;
    }

    static NameTable& byName()
    {
        static auto& table = *new NameTable;
        return table;
    }

    template <class Table, class Key>
    static bool erase(Table& table, const Key& key, const WeakPtr<TypedSlotCreator>& creator)
    {
        const auto entry = table.find(key);
        if (entry == table.end() || !(entry->second == creator)) return false;
        table.erase(entry);
        return true;
    }
};

TypedSlotCreator::TypedSlotCreator() = default;
TypedSlotCreator::~TypedSlotCreator() = default;

RefPtr<TypedSlotCreator> TypedSlotCreator::getTypedSlotCreator(const std::type_info& type)
{
    return Tolmen::findOrNull(InternalTypeCreatorAccessory::byType(), Tolmen::TypeInfo(type));
}

RefPtr<TypedSlotCreator> TypedSlotCreator::getTypedSlotCreator(const string& typeName)
{
    return Tolmen::findOrNull(InternalTypeCreatorAccessory::byName(), typeName);
}

bool TypedSlotCreator::registerTypedSlotCreator(const std::type_info& type,
                                                const WeakPtr<TypedSlotCreator>& creator)
{
    if (!creator) return false;
    auto& ofType = InternalTypeCreatorAccessory::byType()[type];
    auto& ofName = InternalTypeCreatorAccessory::byName()[Tolmen::Typename(type)];
    ofType = creator; // in both or none
    ofName = creator;
    return true;
}

bool TypedSlotCreator::unregisterTypedSlotCreator(const std::type_info& type,
                                                  const WeakPtr<TypedSlotCreator>& creator)
{
    using Tables = InternalTypeCreatorAccessory;
    const string name = Tolmen::Typename(type);
    const bool wasFound = Tables::erase(Tables::byType(), Tolmen::TypeInfo(type), creator);
    const bool wasNamed = Tables::erase(Tables::byName(), name, creator);
    return wasFound || wasNamed;
}

} // namespace Quorl
