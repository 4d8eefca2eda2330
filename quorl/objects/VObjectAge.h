#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/FlatIndex.h>
#include <quorl/foundation/RefPtr.h>

#include <functional>
#include <map>

namespace Quorl
{

/// The ages of objects in one context. What never ran there has the age `Ooooold`. Entries are
/// never removed, so a reference to an age is good for as long as the map lives.
///
/// The order is that of the handles. A walk asks for ages at every step, so they are found by an
/// index beside it.
class QUORL_API VObjectAge : public std::map<WeakPtr<VSlotContainer>, Ageable, std::less<>>
{
public:
    VObjectAge();
    ~VObjectAge();

    /// The age of a container; a missing one is entered as `Ooooold`.
    Ageable& operator()(const WeakPtr<VSlotContainer>& container);

    /// The same without making a handle, unless the container is new here.
    Ageable& operator()(const VSlotContainer& container);

    template <class... Any>
    void erase(Any&&...) = delete;
    template <class... Any>
    void extract(Any&&...) = delete;
    template <class Other>
    void swap(Other&) = delete;
    void clear() = delete;
    VObjectAge(const VObjectAge&) = delete;
    VObjectAge& operator=(const VObjectAge&) = delete;

private:
    Tolmen::FlatIndex<const Tolmen::Referer*, Ageable*> index_;
};

} // namespace Quorl
