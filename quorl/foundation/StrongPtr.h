#pragma once

#include <quorl/foundation/WeakPtrImpl.h>

#include <utility>

namespace Tolmen
{

/// Owns an object: holds one share of `strong`, and one of `weak`. The first strong handle takes a
/// new object over, the last one ends it.
///
/// Caution: an object without any strong handle (on the stack, or in its own constructor) is
/// destroyed by the last of the strong handles that are made to it in passing.
template <class T, class B>
class StrongPtr : public WeakPtrImpl<T, B>
{
    using Weak = WeakPtrImpl<T, B>;
    using typename Weak::Bare;

public:
    StrongPtr() = default;
    StrongPtr(const StrongPtr& source) : Weak(Bare{}, source) { this->refBoth(); }

    /// Takes over both shares; the source becomes null.
    StrongPtr(StrongPtr&& source) noexcept : Weak(Bare{}, source)
    {
        if (this != &source) source.forget();
    }

    /// Takes over both shares of a handle of another type, which becomes null.
    template <class S>
    StrongPtr(StrongPtr<S, B>&& source) noexcept : Weak(Bare{}, source)
    {
        source.forget();
    }

    /// Locks a weak handle. If the object is dead, so is the new handle; it holds the block only.
    StrongPtr(const Weak& source) : Weak(Bare{}, source) { this->refBoth(); }

    template <class S>
    StrongPtr(const DynPtr<S, B>& source) : Weak(Bare{}, source)
    {
        this->refBoth();
    }

    /// From a watched field as from the handle in it.
    template <class S, template <class, class> class H>
    StrongPtr(const Watched<H<S, B>>& source) : StrongPtr(source.value())
    {
    }

    StrongPtr(const ReferenceBase<B>* object) : Weak(Bare{}, object) { this->refBoth(); }

    ~StrongPtr()
    {
        this->unrefBoth();
        this->forget();
    }

    StrongPtr& operator=(const StrongPtr& source) // NOLINT(bugprone-unhandled-self-assignment)
    {
        this->template assign<Shares>(source.referer);
        return *this;
    }
    StrongPtr& operator=(StrongPtr&& source) // NOLINT(performance-noexcept-move-constructor)
    {
        if (this->referer == source.referer) return *this;
        StrongPtr taken(std::move(source)); // which may end with what is dropped
        this->unrefBoth();
        this->adopt(taken.referer);
        taken.forget();
        if (this->referer) CheckRefConstruction(this->referer->object);
        return *this;
    }
    template <class S>
    StrongPtr& operator=(const DynPtr<S, B>& source)
    {
        this->template assign<Shares>(source.referer);
        return *this;
    }
    template <class S, template <class, class> class H>
    StrongPtr& operator=(const Watched<H<S, B>>& source)
    {
        return *this = source.value();
    }

private:
    template <class, class>
    friend class StrongPtr;

    struct Shares
    {
        static void takeRest(const Weak& handle) { handle.ref(); }
        static void drop(Weak& handle) { static_cast<StrongPtr&>(handle).unrefBoth(); }
    };
};

/// Keeps an object alive across calls that may drop it, if anybody owns it: to hold one that nobody
/// owns would end it.
/// \return null for one that is dead or unowned.
template <class T, class B>
StrongPtr<T, B> heldIfOwned(const DynPtr<T, B>& object)
{
    return object && object.referer->isOwned() ? StrongPtr<T, B>(object) : StrongPtr<T, B>();
}

} // namespace Tolmen
