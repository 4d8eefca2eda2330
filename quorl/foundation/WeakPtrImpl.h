#pragma once

#include <quorl/foundation/DynPtr.h>

namespace Tolmen
{

/// Observes an object: holds one share of `weak`, which keeps the count block, not the object.
///
/// It is never moved, for what is seen as a weak handle may be the base of a strong one.
template <class T, class B>
class WeakPtrImpl : public DynPtr<T, B>
{
    using Handle = DynPtr<T, B>;

public:
    WeakPtrImpl() = default;

    WeakPtrImpl(const WeakPtrImpl& source) : WeakPtrImpl(Bare{}, source) { takeWeakShare(); }

    /// Converts by a dynamic cast. Where it fails, or the object is dead, this handle is not alive
    /// but holds the block all the same.
    template <class S>
    WeakPtrImpl(const DynPtr<S, B>& source) : WeakPtrImpl(Bare{}, source)
    {
        takeWeakShare();
    }

    /// From the object itself; null gives the null handle.
    WeakPtrImpl(const ReferenceBase<B>* object) : WeakPtrImpl(Bare{}, object) { takeWeakShare(); }

    /// From a watched field as from the handle in it.
    template <class S, template <class, class> class H>
    WeakPtrImpl(const Watched<H<S, B>>& source) : WeakPtrImpl(source.value())
    {
    }

    ~WeakPtrImpl() { releaseWeakShare(); }

    WeakPtrImpl& operator=(const WeakPtrImpl& source) // NOLINT(bugprone-unhandled-self-assignment)
    {
        assign(source.referer);
        return *this;
    }
    template <class S>
    WeakPtrImpl& operator=(const DynPtr<S, B>& source)
    {
        assign(source.referer);
        return *this;
    }
    template <class S, template <class, class> class H>
    WeakPtrImpl& operator=(const Watched<H<S, B>>& source)
    {
        return *this = source.value();
    }

protected:
    /// What a strong handle does beyond a weak one, told by type to keep one copy of the order.
    struct WeakShare
    {
        static void takeRest(const WeakPtrImpl& /*handle*/) {}
        static void drop(WeakPtrImpl& handle) { handle.wunref(); }
    };

    /// Without a share: strong handles take and drop theirs themselves.
    struct Bare
    {
    };

    /// Nothing is read from itself: what stood in the storage before its constructor is no handle,
    /// and this one becomes null.
    WeakPtrImpl(Bare, const WeakPtrImpl& source)
    {
        if (this == &source)
            reportSelfConstruction();
        else
            static_cast<Handle&>(*this) = source;
    }
    template <class S>
    WeakPtrImpl(Bare, const DynPtr<S, B>& source)
    {
        adopt(source.referer);
    }
    WeakPtrImpl(Bare, const ReferenceBase<B>* object)
    {
        if (object != nullptr) adopt(object->self.referer);
    }

    template <class Share = WeakShare>
    void assign(Referer* next);

    void adopt(Referer* source)
    {
        this->referer = source;
        this->recompute(source);
    }

private:
    void takeWeakShare() const
    {
        if (this->referer) this->referer->weak.fetch_add(1, std::memory_order_relaxed);
    }

    void releaseWeakShare()
    {
        this->wunref();
        this->forget();
    }

    [[gnu::noinline, gnu::cold]] void reportSelfConstruction() const
    {
        SpeakPtr::theSpeaker().SelfConstruction(typeid(Handle), this, this->referer);
    }
};

/// Drops what is held, then holds `next`. Nothing happens at all if that is the same block.
///
/// The order is fixed: what the end of the old object does, it does before the new one is looked
/// at, so the new one may die of it and this handle is then dead. Only the weak share of `next` is
/// taken first, lest its block be freed together with the handle that it was read from.
template <class T, class B>
template <class Share>
void WeakPtrImpl<T, B>::assign(Referer* next)
{
    if (this->referer == next) return;
    if (next) next->weak.fetch_add(1, std::memory_order_relaxed);
    Share::drop(*this);
    adopt(next);
    if (!next) return;
    Share::takeRest(*this);
    CheckRefConstruction(next->object);
}

} // namespace Tolmen
