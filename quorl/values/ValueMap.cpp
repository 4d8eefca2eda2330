#include <quorl/values/ValueMap.h>

#include <quorl/foundation/FindOrNull.h>
#include <quorl/foundation/SteadyChange.h>
#include <quorl/foundation/SteadyWalk.h>
#include <quorl/values/VValueBase.h>

namespace Quorl
{

bool ValueMap::iterator::apply(const string& /*name*/, const RefPtr<VValueBase>& /*value*/)
{
    return true;
}

ValueMap::iterator::~iterator() = default;

ValueMap::ValueMap() = default;

ValueMap::ValueMap(const ValueMap& source) : ValueMap()
{
    if (!source.entries_) return;
    Tolmen::walkSteadily(*source.entries_,
                         [&](const string& name, const RefPtr<VValueBase>& value) {
                             if (value) entries()[name] = value->copy();
                             return true;
                         });
}

ValueMap& ValueMap::operator=(const ValueMap& source)
{
    if (this == &source) return *this;
    ValueMap copied(source);
    if (copied.entries_)
        entries().swap(*copied.entries_);
    else
        clear();
    return *this;
}

ValueMap::~ValueMap() = default;

ValueMap::Entries& ValueMap::entries()
{
    if (!entries_) entries_ = std::make_unique<Entries>();
    return *entries_;
}

void ValueMap::clear()
{
    if (!entries_) return;
    Entries former; // ends when the map is whole
    entries_->swap(former);
}

RefPtr<VValueBase> ValueMap::getValue(const string& name) const
{
    return entries_ ? Tolmen::findOrNull(*entries_, name) : RefPtr<VValueBase>();
}

void ValueMap::setValue(const string& name, const RefPtr<VValueBase>& value)
{
    Tolmen::enterSteadily(entries(), name, value);
}

unsigned long long ValueMap::nComponents() const
{
    return entries_ ? entries_->size() : 0;
}

int ValueMap::iterate(iterator& visitor) const
{
    if (!entries_) return 0;
    int count = 0;
    Tolmen::walkSteadily(*entries_, [&](const string& name, const RefPtr<VValueBase>& value) {
        if (!visitor.apply(name, value)) return false;
        ++count;
        return true;
    });
    return count;
}

bool ValueMap::copyComponents(const ValueMap& source, const WeakPtr<VValueBase>& container)
{
    clear(); // first: nothing is left of a map that is its own source
    if (!container) return false;
    if (!source.entries_) return true;
    return Tolmen::walkSteadily(
        *source.entries_, [&](const string& name, const RefPtr<VValueBase>& value) {
            const RefPtr<VValueBase> copied = value ? value->copy() : RefPtr<VValueBase>();
            if (copied && copied->setContainerValue(container))
                Tolmen::enterSteadily(entries(), name, copied);
            return true;
        });
}

} // namespace Quorl
