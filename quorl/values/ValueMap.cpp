#include <quorl/values/ValueMap.h>

#include <quorl/values/VValueBase.h>

namespace Quorl
{

bool ValueMap::iterator::apply(const string& /*name*/, const RefPtr<VValueBase>& /*value*/)
{
    return true;
}

ValueMap::iterator::~iterator() = default;

ValueMap::ValueMap() : entries_(new Entries) {}

ValueMap::ValueMap(const ValueMap& source) : ValueMap()
{
    for (const auto& [name, value] : *source.entries_)
        if (value) (*entries_)[name] = value->copy();
}

ValueMap& ValueMap::operator=(const ValueMap& source)
{
    if (this == &source) return *this;
    ValueMap copied(source);
    entries_.swap(copied.entries_);
    return *this;
}

ValueMap::~ValueMap() = default;

RefPtr<VValueBase> ValueMap::getValue(const string& name) const
{
    const auto entry = entries_->find(name);
    return entry == entries_->end() ? RefPtr<VValueBase>() : entry->second;
}

void ValueMap::setValue(const string& name, const RefPtr<VValueBase>& value)
{
    (*entries_)[name] = value;
}

unsigned long long ValueMap::nComponents() const
{
    return entries_->size();
}

int ValueMap::iterate(iterator& visitor) const
{
    int count = 0;
    for (const auto& [name, value] : *entries_)
    {
        if (!visitor.apply(name, value)) break;
        ++count;
    }
    return count;
}

bool ValueMap::copyComponents(const ValueMap& source, const WeakPtr<VValueBase>& container)
{
    entries_ =
        std::make_unique<Entries>(); // first: nothing is left of a map that is its own source
    if (!container) return false;
    for (const auto& [name, value] : *source.entries_)
    {
        if (!value) continue;
        const RefPtr<VValueBase> copied = value->copy();
        if (copied && copied->setContainerValue(container)) (*entries_)[name] = copied;
    }
    return true;
}

} // namespace Quorl
