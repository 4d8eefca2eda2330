#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <memory>

namespace Quorl
{

/// Visits the pools in which a list has a variable; true goes on.
class QUORL_API ValueShadowIterator
{
public:
    virtual ~ValueShadowIterator();
    virtual bool apply(const RefPtr<ValuePool>& pool, const RefPtr<VValueBase>& variable) = 0;
};

/// Visits observers; true goes on.
class QUORL_API NotifiedValueIterator
{
public:
    virtual ~NotifiedValueIterator();
    virtual bool apply(const RefPtr<ValueNotifier>& notifier) = 0;
};

/// The observable half of a parameter, and the key of its variables in pools.
///
/// Keeps its observers and its shadows, which are the pools where it has a variable, weakly, and
/// never removes one: the dead are passed over. All of it can be changed through a constant list.
///
/// Threads: no lock. A list must not be changed by another thread while it notifies.
class QUORL_API ValueNotifierList : public Tolmen::ReferenceBase<ValueNotifierList>
{
public:
    ValueNotifierList();
    ValueNotifierList(const ValueNotifierList&) = delete;
    ValueNotifierList& operator=(const ValueNotifierList&) = delete;
    ~ValueNotifierList() override;

    virtual void touch() const;

    /// The value outside of all pools; a null handle by default.
    virtual const RefPtr<VValueBase>& DefaultValue() const;

    /// Appends an observer; one that is added twice is told twice.
    /// \return false, and nothing is added, if the handle is not alive.
    bool addNotifier(const WeakPtr<ValueNotifier>& notifier) const;
    bool contains(const WeakPtr<ValueNotifier>& notifier) const; ///< false for a dead handle
    bool hasNotifiers() const;                                   ///< dead ones count

    /// Tells the live observers of a change, the oldest first, one after the other. One that is
    /// added meanwhile stands at the end and is told as well.
    /// \param skip the observer that made the change and is not told; may be null.
    /// \param caller the list that sent the change on; a list that set it off is not told of it
    /// again. Null means this list.
    void notify(const RefPtr<VValueBase>& value, const WeakPtr<ValuePool>& pool,
                const WeakPtr<ValueNotifier>& skip, const ValueNotifierList* caller,
                const ValueMap* changes) const;

    /// Notes a pool that has a variable for this list. \return true.
    bool addShadow(const WeakPtr<ValuePool>& pool) const;

    /// Removes the variables of this list from its pools, which stay noted. \return true.
    bool removeAllShadows();

    /// Gives this list a copy of each variable of `source`, with the present clock as its age.
    /// \return the number of variables made.
    int copyShadows(const WeakPtr<ValueNotifierList>& source);

    /// Visits the live pools with a live variable for this list, in the set's order.
    /// \return the number of visits that answered true.
    int iterateShadows(ValueShadowIterator& visitor) const;

    /// Visits the live observers in the order of addition.
    /// \return the number of visits that answered true.
    int iterateValues(NotifiedValueIterator& visitor) const;

    /// Takes the newest undo action back. \return its answer; false without a stack.
    bool undo();

    /// Adds an undo action to the list's stack, which the first one makes.
    /// \param size cuts the stack to so many entries, now; 0 and below leave it as it is.
    void AddUndoAction(const RefPtr<VUndoAction>& action, int size);

    RefPtr<VUndoStack>& UndoStack() const; ///< null before the first action

private:
    struct Record;

    Record& ensuredRecord() const; // made if it is missing

    // Shared with walks, which an observer's deeds may outlive; null while it would be empty.
    mutable std::shared_ptr<Record> record_;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::ValueNotifierList>;
} // namespace Tolmen
