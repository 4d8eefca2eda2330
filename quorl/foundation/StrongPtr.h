#pragma once

#include <quorl/foundation/WeakPtrImpl.h>

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
    using Handle = DynPtr<T, B>;

public:
    StrongPtr() = default;
    StrongPtr(const StrongPtr& source) : Weak(source) { this->ref(); }

    /// Locks a weak handle. If the object is dead, so is the new handle; it holds the block only.
    StrongPtr(const Weak& source) : Weak(source) { this->ref(); }

    template <class S>
    StrongPtr(const DynPtr<S, B>& source) : Weak(source)
    {
        this->ref();
    }

    StrongPtr(const ReferenceBase<B>* object) : Weak(object) { this->ref(); }

    ~StrongPtr() { this->unref(); }

    StrongPtr& operator=(const StrongPtr& source) // NOLINT(bugprone-unhandled-self-assignment)
    {
        this->template assign<Share>(source.referer);
        return *this;
    }
    template <class S>
    StrongPtr& operator=(const DynPtr<S, B>& source)
    {
        this->template assign<Share>(source.referer);
        return *this;
    }

private:
    struct Share
    {
        static void take(const Handle& handle) { handle.ref(); }
        static void drop(const Handle& handle) { handle.unref(); }
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
