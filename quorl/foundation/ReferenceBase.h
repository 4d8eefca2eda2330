#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/RefererPool.h>
#include <quorl/foundation/StrongPtr.h>
#include <quorl/foundation/Watch.h>

namespace Tolmen
{

/// Hooks of a debugging tracker of objects: told of each object at the end of its base's
/// constructor, with the types of the base and of the root, and in its destructor.
inline void CheckConstruction(void* /*object*/, const std::type_info& /*base*/,
                              const std::type_info& /*type*/)
{
}
inline void CheckRefExcludeObject(void* /*object*/) {}

/// Base of all that is held by handles; `T` is the class that derives from it directly.
///
/// An object is born without an owner: `new T` and the first strong handle are separate steps, and
/// an object on the stack or in static storage stays without one for good. It can be observed by
/// weak handles in any case. A copy is an object of its own, with its own block and number.
template <class T>
class TOLMEN_TEMPLATE_API ReferenceBase
{
public:
    using ReferenceRoot = T;

    ReferenceBase();
    ReferenceBase(const ReferenceBase& /*other*/) : ReferenceBase() {}
    ReferenceBase& operator=(const ReferenceBase& /*other*/) { return *this; }

    /// Called once when the last strong handle has gone, while the object is whole. Handles made
    /// here work; those that are kept are dead afterwards.
    virtual void extremeUnction() {}

    virtual ~ReferenceBase();

    DynPtr<T, T> self;                    ///< the object's own share of its block
    std::int32_t ID;                      ///< number among the objects of `T`, from 1, never reused
    static std::int32_t MaxObjectCountID; ///< the next `ID`
};

template <class T>
constinit std::int32_t ReferenceBase<T>::MaxObjectCountID = 1;

template <class T>
ReferenceBase<T>::ReferenceBase()
{
    self.referer = RefererPool::take();
    self.referer->object = this;
    changeTally(RefererObjects, +1);
    self.referer->weak.store(1, std::memory_order_relaxed);
    ID = changeTally(MaxObjectCountID, +1);
    changeTally(CheckRefcountedObjects, +1);
    CheckConstruction(this, typeid(ReferenceBase), typeid(T));
}

template <class T>
ReferenceBase<T>::~ReferenceBase()
{
    const std::int32_t owners =
        self.referer ? self.referer->strong.load(std::memory_order_relaxed) : kDead;
    if (owners > 0) Watch::shapeChanges(); // who may have it in a network
    if (owners >= 0) self.referer->strong.store(kDead, std::memory_order_relaxed);
    changeTally(CheckRefcountedObjects, -1);
    CheckRefExcludeObject(this);
    self.wunref();
    self.referer = nullptr; // another thread may hold the last share and free the block now
}

} // namespace Tolmen
