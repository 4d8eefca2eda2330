#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/values/ValueNotifier.h>

namespace Quorl
{

/// The observer of a parameter that acts as an input of it.
///
/// It should be held by a strong handle: the first one made to it in passing would end it. That it
/// is not is said on standard output.
class QUORL_API VInputBase : public ValueNotifier
{
public:
    explicit VInputBase(const WeakPtr<VParameter>& owner);
    ~VInputBase() override;

    /// Takes over what the value in a context is now.
    virtual bool SyncFromContextValue(const RefPtr<ValuePool>& pool, const string& member) = 0;

    /// Makes this an input of `newOwner`. A parameter whose preferences have the word "local"
    /// becomes local by that, for good.
    void setOwner(const WeakPtr<VParameter>& newOwner);

    /// Subscribes to the owner. \return false without a live owner. That nobody holds this input
    /// is said on standard output, but does not hinder it.
    bool activateNotification() const;

    /// Tells the other observers of the owner its default value. Says so on standard output.
    void notify(const ValueNotifierList* caller, const WeakPtr<ValuePool>& pool) const;

    WeakPtr<VParameter> owner;
};

} // namespace Quorl
