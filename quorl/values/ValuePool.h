#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/mutex.h>

#include <memory>

namespace Quorl
{

/// A context: its own values of parameters, and its own ages of objects, so that one network is
/// evaluated in several contexts side by side.
///
/// A value that a pool holds for a parameter is a variable. Its key is the parameter's
/// `ValueNotifierList`; pools know nothing else of parameters. The pool owns its variables, not the
/// keys: of a parameter that has ended, the entry stays until the pool ends.
///
/// Threads: none of these operations takes the pool's mutex; that is for its users.
class QUORL_API ValuePool : public Tolmen::ReferenceBase<ValuePool>,
                            public Tolmen::Intercube,
                            public Tolmen::mutex
{
public:
    /// Visits named pools; true goes on.
    class QUORL_API iterator
    {
    public:
        virtual ~iterator();
        virtual bool apply(const string& name, const WeakPtr<ValuePool>& pool) = 0;
    };

    /// A pool that cannot be found by name. It is called "[invalid:<address>]" until it is named.
    ValuePool();

    /// A pool that is found under `name`, in place of an earlier one of that name.
    explicit ValuePool(const string& name);

    /// Leaves its entries in the table of pools, which are dead from then on.
    ~ValuePool() override;

    /// Enters the pool under `newName`. It is still found under its old name, too.
    /// \return true.
    bool setName(const string& newName);

    /// The pool of that name; if none was ever entered, the first one alive that a pool creator
    /// makes for the name, else null. A pool that has ended hides the creators: its handle comes
    /// back, dead.
    static RefPtr<ValuePool> getValuePool(const string& name);

    /// Visits the live named pools in the order of names.
    /// \return the number of visits that answered true.
    static int iterate(iterator& visitor);

    /// The variable of a parameter, null if there is none.
    RefPtr<VValueBase> findVariable(const WeakPtr<ValueNotifierList>& key) const;
    RefPtr<VValueBase>
    findVariable(const Tolmen::DynPtr<ValueNotifierList, ValueNotifierList>& key) const;

    /// Puts a value in the place of an earlier one, which is dropped.
    void createVariable(const WeakPtr<ValueNotifierList>& key, const RefPtr<VValueBase>& value);
    void removeVariable(const WeakPtr<ValueNotifierList>& key);

    /// Enters a value without a parameter, weakly. \return true.
    bool registerValue(const string& name, const WeakPtr<VValueBase>& value);

    /// Null if the name is unknown; a handle that is not alive if the value has ended.
    RefPtr<VValueBase> retrieveValue(const string& name) const;

    /// \return true, also if the name was unknown.
    bool removeValue(const string& name);

    /// The ages of objects in this context.
    VObjectAge& ObjectAgePool();

    /// Tells the observers of all parameters concerned that this pool is now used in place of
    /// `old`: first those with a variable in `old` alone, which fall back to their default values
    /// and are told so with a null pool; then those with a variable here. Nothing is copied. If
    /// `old` is this same pool, nothing happens.
    /// \param skip an observer that is not told; may be null.
    /// \param changes handed on to the observers; may be null.
    void activate(const RefPtr<ValuePool>& old, const WeakPtr<ValueNotifier>& skip,
                  const ValueMap* changes) const;

    string name;

private:
    struct Data;

    /// The record, made if it is missing.
    Data& data();

    std::shared_ptr<Data> data_; // shared with walks; null while the values of an ended pool end
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::ValuePool>;
} // namespace Tolmen
