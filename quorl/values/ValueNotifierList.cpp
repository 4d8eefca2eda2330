#include <quorl/values/ValueNotifierList.h>

#include <quorl/services/VUndoAction.h>
#include <quorl/services/VUndoStack.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValuePool.h>

#include <list>
#include <set>

namespace Tolmen
{
template class ReferenceBase<Quorl::ValueNotifierList>;
} // namespace Tolmen

namespace Quorl
{

struct ValueNotifierList::Record
{
    std::list<WeakPtr<ValueNotifier>> notifiers;
    std::set<WeakPtr<ValuePool>> shadows;
    RefPtr<VUndoStack> undoStack;
};

ValueShadowIterator::~ValueShadowIterator() = default;
NotifiedValueIterator::~NotifiedValueIterator() = default;

ValueNotifierList::ValueNotifierList() : record_(new Record) {}
ValueNotifierList::~ValueNotifierList() = default;

void ValueNotifierList::touch() const {}

const RefPtr<VValueBase>& ValueNotifierList::DefaultValue() const
{
    static const RefPtr<VValueBase> none;
    return none;
}

bool ValueNotifierList::addNotifier(const WeakPtr<ValueNotifier>& notifier) const
{
    if (!notifier) return false;
    record_->notifiers.push_back(notifier);
    return true;
}

bool ValueNotifierList::contains(const WeakPtr<ValueNotifier>& notifier) const
{
    if (!notifier) return false;
    for (const WeakPtr<ValueNotifier>& entry : record_->notifiers)
        if (entry == notifier) return true;
    return false;
}

void ValueNotifierList::notify(const RefPtr<VValueBase>& value, const WeakPtr<ValuePool>& pool,
                               const WeakPtr<ValueNotifier>& skip, const ValueNotifierList* caller,
                               const ValueMap* changes) const
{
    if (caller == this) return;
    const ValueNotifierList* const sender = caller ? caller : this;
    const std::shared_ptr<Record> record = record_; // an observer may end this list
    for (const WeakPtr<ValueNotifier>& entry : record->notifiers)
        if (entry && !(entry == skip)) entry->valueChanged(value, pool, sender, changes);
}

bool ValueNotifierList::addShadow(const WeakPtr<ValuePool>& pool) const
{
    record_->shadows.insert(pool);
    return true;
}

bool ValueNotifierList::removeAllShadows()
{
    const WeakPtr<ValueNotifierList> key(this);
    const std::shared_ptr<Record> record = record_; // a value that ends may end this list
    for (const WeakPtr<ValuePool>& pool : record->shadows)
        if (pool) pool->removeVariable(key);
    return true;
}

int ValueNotifierList::copyShadows(const WeakPtr<ValueNotifierList>& source)
{
    if (!source) return 0;
    const WeakPtr<ValueNotifierList> key(this);
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
    for (const WeakPtr<ValueNotifier>& entry : record->notifiers)
    {
        const RefPtr<ValueNotifier> notifier = entry;
        if (!notifier) continue;
        if (!visitor.apply(notifier)) break;
        ++count;
    }
    return count;
}

bool ValueNotifierList::undo()
{
    const RefPtr<VUndoStack> stack = record_->undoStack;
    return stack && stack->undo();
}

void ValueNotifierList::AddUndoAction(const RefPtr<VUndoAction>& action, int size)
{
    RefPtr<VUndoStack>& stack = record_->undoStack;
    if (!stack) stack = new VUndoStack;
    stack->AddAction(action);
    if (size > 0) stack->setSize(size);
}

RefPtr<VUndoStack>& ValueNotifierList::UndoStack() const
{
    return record_->undoStack;
}

} // namespace Quorl
