#include <quorl/values/ValueNotifierList.h>

#include <quorl/services/VUndoAction.h>
#include <quorl/services/VUndoStack.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValuePool.h>

#include <cstddef>
#include <set>
#include <vector>

namespace Tolmen
{
template class ReferenceBase<Quorl::ValueNotifierList>;
} // namespace Tolmen

namespace Quorl
{

struct ValueNotifierList::Record
{
    // Grows in the midst of walks, which therefore count, and keep no reference into it.
    std::vector<WeakPtr<ValueNotifier>> notifiers;
    std::set<WeakPtr<ValuePool>> shadows;
    RefPtr<VUndoStack> undoStack;
};

ValueShadowIterator::~ValueShadowIterator() = default;
NotifiedValueIterator::~NotifiedValueIterator() = default;

ValueNotifierList::ValueNotifierList() = default;
ValueNotifierList::~ValueNotifierList() = default;

ValueNotifierList::Record& ValueNotifierList::ensuredRecord() const
{
    if (!record_) record_ = std::make_shared<Record>();
    return *record_;
}

void ValueNotifierList::touch() const {}

const RefPtr<VValueBase>& ValueNotifierList::DefaultValue() const
{
    static const RefPtr<VValueBase> none;
    return none;
}

bool ValueNotifierList::addNotifier(const WeakPtr<ValueNotifier>& notifier) const
{
    if (!notifier) return false;
    ensuredRecord().notifiers.push_back(notifier);
    return true;
}

bool ValueNotifierList::contains(const WeakPtr<ValueNotifier>& notifier) const
{
    if (!notifier || !record_) return false;
    for (const WeakPtr<ValueNotifier>& entry : record_->notifiers)
        if (entry == notifier) return true;
    return false;
}

bool ValueNotifierList::hasNotifiers() const
{
    return record_ && !record_->notifiers.empty();
}

void ValueNotifierList::notify(const RefPtr<VValueBase>& value, const WeakPtr<ValuePool>& pool,
                               const WeakPtr<ValueNotifier>& skip, const ValueNotifierList* caller,
                               const ValueMap* changes) const
{
    if (caller == this || !hasNotifiers()) return;
    const ValueNotifierList* const sender = caller ? caller : this;
    const std::shared_ptr<Record> record = record_; // an observer may end this list
    for (std::size_t next = 0; next < record->notifiers.size(); ++next)
    {
        const WeakPtr<ValueNotifier>& entry = record->notifiers[next];
        if (entry && !(entry == skip)) entry->valueChanged(value, pool, sender, changes);
    }
}

bool ValueNotifierList::addShadow(const WeakPtr<ValuePool>& pool) const
{
    ensuredRecord().shadows.insert(pool);
    return true;
}

bool ValueNotifierList::removeAllShadows()
{
    if (!record_) return true;
    const WeakPtr<ValueNotifierList> key(this);
    const std::shared_ptr<Record> record = record_; // a value that ends may end this list
    for (const WeakPtr<ValuePool>& pool : record->shadows)
        if (pool) pool->removeVariable(key);
    return true;
}

int ValueNotifierList::copyShadows(const WeakPtr<ValueNotifierList>& source)
{
    if (!source || !source->record_) return 0;
    const WeakPtr<ValueNotifierList> key(this);
    ensuredRecord();
    // A value that is replaced may end either list.
    const std::shared_ptr<Record> record = record_;
    const std::shared_ptr<Record> original = source->record_;
    int count = 0;
    for (const WeakPtr<ValuePool>& pool : original->shadows)
    {
        if (!pool) continue;
        const RefPtr<VValueBase> variable = pool->findVariable(source);
        if (!variable) continue;
        const RefPtr<VValueBase> copied = variable->copy();
        if (!copied) continue;
        record->shadows.insert(pool);
        pool->createVariable(key, copied);
        ++count;
    }
    return count;
}

int ValueNotifierList::iterateShadows(ValueShadowIterator& visitor) const
{
    if (!record_) return 0;
    const WeakPtr<ValueNotifierList> key(this);
    const std::shared_ptr<Record> record = record_; // a visitor may end this list
    int count = 0;
    for (const WeakPtr<ValuePool>& entry : record->shadows)
    {
        const RefPtr<ValuePool> pool = entry;
        if (!pool) continue;
        const RefPtr<VValueBase> variable = pool->findVariable(key);
        if (!variable) continue;
        if (!visitor.apply(pool, variable)) break;
        ++count;
    }
    return count;
}

int ValueNotifierList::iterateValues(NotifiedValueIterator& visitor) const
{
    const std::shared_ptr<Record> record = record_; // a visitor may end this list
    int count = 0;
    for (std::size_t next = 0; record && next < record->notifiers.size(); ++next)
    {
        const RefPtr<ValueNotifier> notifier = record->notifiers[next];
        if (!notifier) continue;
        if (!visitor.apply(notifier)) break;
        ++count;
    }
    return count;
}

bool ValueNotifierList::undo()
{
    const RefPtr<VUndoStack> stack = record_ ? record_->undoStack : RefPtr<VUndoStack>();
    return stack && stack->undo();
}

void ValueNotifierList::AddUndoAction(const RefPtr<VUndoAction>& action, int size)
{
    RefPtr<VUndoStack>& own = ensuredRecord().undoStack;
    if (!own) own = new VUndoStack;
    const RefPtr<VUndoStack> stack = own; // an action that is cut off may end this list
    stack->AddAction(action);
    if (size > 0) stack->setSize(size);
}

RefPtr<VUndoStack>& ValueNotifierList::UndoStack() const
{
    return ensuredRecord().undoStack;
}

} // namespace Quorl
