#pragma once

#include <quorl/foundation/CastCache.h>
#include <quorl/foundation/Forward.h>
#include <quorl/foundation/Referer.h>
#include <quorl/foundation/RefererPool.h>
#include <quorl/foundation/SpeakPtr.h>
#include <quorl/foundation/Watch.h>

#include <compare>
#include <functional>
#include <new>
#include <type_traits>
#include <typeinfo>

namespace Tolmen
{

/// The hook of a debugging tracker of handle assignments: told the object of each count block that
/// an assignment stored. Plain copies are not told, on purpose.
inline void CheckRefConstruction(void* /*object*/) {}

namespace Detail
{

/// The second word of a handle whose type is not the root of its handles: the object as a `T*`,
/// found by a dynamic cast when the handle was made.
template <class T, class B>
struct TypedView
{
    T* cached = nullptr;

    static T* cast(const Referer* referer)
    {
        if (!referer || !referer->isAlive()) return nullptr;
        return CastCache<T, B>::cast(static_cast<ReferenceBase<B>*>(referer->object));
    }

    void recompute(const Referer* referer) { cached = cast(referer); }
    bool isViewed() const { return cached != nullptr; }
    T* pointer(void* /*object*/) const { return cached; }
};

/// A root needs no second word: its handles are one pointer wide.
template <class B>
struct TypedView<B, B>
{
    void recompute(const Referer* /*referer*/) {}
    bool isViewed() const { return true; }
    B* pointer(void* object) const
    {
        return static_cast<B*>(static_cast<ReferenceBase<B>*>(object));
    }
};

} // namespace Detail

/// The common part of all handles: refers to the count block of an object, and to the object as a
/// `T`. It holds no share of its own; `WeakPtrImpl` and `StrongPtr` do.
///
/// `B` is the class that derives directly from `ReferenceBase<B>`, `T` is `B` or derived from it.
/// Alive means: there is a block, its object is not null, and `strong` is not negative; for `T`
/// different from `B`, the cast to `T` has succeeded as well.
///
/// Cost: an alive test and a member access are a test or two of memory that the caller is about to
/// use. The dynamic cast is paid when a handle is made from one of another type or assigned, and by
/// `rawptr`; `CastCache` makes it cheap. A copy is one atomic instruction, a move of a strong
/// handle none.
///
/// Threads: several threads may copy, lock and drop handles of one object at once, each its own
/// handle. A weak handle may be locked only where the last strong one is not dropped meanwhile.
template <class T, class B>
class DynPtr : public Detail::TypedView<T, B>
{
    using View = Detail::TypedView<T, B>;

public:
    Referer* referer = nullptr; ///< shared; lives while a handle holds it

    DynPtr() = default;
    DynPtr(const DynPtr&) = default;
    DynPtr& operator=(const DynPtr&) = default;

    /// Checks that the block, if there still is one, has not lost all its shares. Only a bare
    /// `DynPtr` comes here with a block; the handles with shares have forgotten theirs.
    ~DynPtr()
    {
        if (referer && referer->strong.load(std::memory_order_relaxed) == 0 &&
            referer->weak.load(std::memory_order_relaxed) == 0)
            reportLostShares();
    }

    /// Takes a strong share, unless the object is dead.
    void ref() const
    {
        if (!referer) return;
        const std::int32_t strong = referer->strong.load(std::memory_order_relaxed);
        if (strong < 0) return;
        if constexpr (std::is_same_v<B, Cacheable>)
            if (strong == 0 && referer->object) root()->CacheableDeferredConstructor();
        // Relaxed: a share is only ever taken by somebody to whom the object is visible already.
        referer->strong.fetch_add(1, std::memory_order_relaxed);
    }

    /// Drops a strong share. The last one ends the object, on this thread.
    void unref() const
    {
        // Release: what this owner did to the object is seen by the thread that ends it, which
        // acquires it.
        if (referer && referer->strong.load(std::memory_order_relaxed) > 0 &&
            referer->strong.fetch_sub(1, std::memory_order_acq_rel) == 1)
            endLife(*referer);
    }

    /// Drops a weak share; the last one frees the block and clears the pointer.
    void wunref()
    {
        if (referer && referer->weak.fetch_sub(1, std::memory_order_acq_rel) == 1) freeReferer();
    }

    /// \return the object, null if it is not alive. For `T` different from `B` a fresh cast is made
    /// and compared; a difference is reported, and the kept pointer returned.
    /// \throws std::bad_typeid if the kept pointer is null and the cast would now succeed.
    T* rawptr() const
    {
        if (!referer || !referer->isAlive()) return nullptr;
        if constexpr (!std::is_same_v<T, B>)
        {
            T* const fresh = View::cast(referer);
            if (fresh != View::cached) reportInconsistency(fresh);
        }
        return View::pointer(referer->object);
    }

    /// \pre the handle is alive. Otherwise the process ends with a memory fault, at once.
    T* operator->() const
    {
        if (!*this) faultOnDeadHandle();
        return View::pointer(referer->object);
    }
    T& operator*() const { return *operator->(); }

    /// The object as an `S`, for as long as others hold it: takes no share.
    /// \return null if it is no `S`, or not alive.
    template <class S>
    S* viewAs() const
    {
        return Detail::TypedView<S, B>::cast(referer);
    }

    bool operator!() const { return !(referer && referer->isAlive() && View::isViewed()); }

    /// For truth tests only.
    operator void*() const
    {
        if (!*this) return nullptr;
        if constexpr (std::is_same_v<T, B>)
            return referer;
        else
            return const_cast<void*>(static_cast<const volatile void*>(View::cached));
    }

    /// Tells the diagnostics the state of this handle, with the texts `b` and `a`.
    void Speak(const char* a, const char* b) const;

    /// A null handle that lasts until the process ends, and beyond its clean-up.
    [[gnu::visibility("hidden")]] static const DynPtr<T, T>& getNullPtr();

protected:
    /// For the destructors of handles, behind `wunref`: another thread may free the block as soon
    /// as the share is gone, so it is not looked at again, neither by the check above.
    void forget() { referer = nullptr; }

    /// Takes a strong and a weak share; of one that is dead, the weak one alone.
    void refBoth() const
    {
        if (!referer) return;
        if (std::is_same_v<B, Cacheable> || referer->strong.load(std::memory_order_relaxed) < 0)
        {
            referer->weak.fetch_add(1, std::memory_order_relaxed);
            ref();
        }
        else
            referer->takeBoth();
    }

    /// Drops a strong and a weak share, in this order if the strong one is the last.
    void unrefBoth()
    {
        if (!referer) return;
        if (referer->strong.load(std::memory_order_acquire) <= 1)
            dropLast();
        else if (referer->dropBoth() == 1)
        {
            // Others have dropped theirs at the same moment, so this was the last after all. The
            // share of the object itself keeps the block.
            Referer* const former = referer;
            former->weak.fetch_add(1, std::memory_order_relaxed);
            endLife(*former);
            if (referer != former) return unrefBoth(); // as below
            wunref();
        }
    }

    ReferenceBase<B>* rootBase() const { return static_cast<ReferenceBase<B>*>(referer->object); }
    B* root() const { return static_cast<B*>(rootBase()); }

private:
    static constexpr std::int32_t kMineAndItsOwn = 2;

    /// The last strong share, or one that was none any more.
    [[gnu::noinline]] void dropLast()
    {
        const Referer* const former = referer;
        // If nobody else has a handle, nobody can be changing the counters.
        const bool isAlone = referer->strong.load(std::memory_order_acquire) == 1 &&
                             referer->weak.load(std::memory_order_acquire) == kMineAndItsOwn;
        if (isAlone)
            endLife(*referer);
        else
            unref();
        if (referer != former) return unrefBoth(); // what ended has assigned to this very handle
        if (referer->weak.load(std::memory_order_acquire) == 1)
            freeReferer();
        else
            wunref();
    }

    [[gnu::noinline]] void freeReferer()
    {
        RefererPool::giveBack(referer);
        referer = nullptr;
        changeTally(RefererObjects, -1);
    }

    // Kept out of line: every use of a handle in the program pays for what stands above.
    [[gnu::noinline]] static void endLife(Referer& referer);
    [[gnu::noinline, gnu::cold]] void reportLostShares() const;
    [[gnu::noinline, gnu::cold]] void reportInconsistency(T* fresh) const;
};

/// Handles to one object are equal, whatever their types, alive or dead; so are null handles.
template <class T1, class T2, class B>
bool operator==(const DynPtr<T1, B>& left, const DynPtr<T2, B>& right)
{
    return left.referer == right.referer;
}

/// The order of all maps and sets of handles: by the address of the count block. Not left to the
/// operator below, by which g++ makes a look-up take twice as long.
template <class T1, class T2, class B>
bool operator<(const DynPtr<T1, B>& left, const DynPtr<T2, B>& right)
{
    return std::less<const Referer*>()(left.referer, right.referer);
}

/// The same for tuples and pairs of handles, which ask for it.
template <class T1, class T2, class B>
std::strong_ordering operator<=>(const DynPtr<T1, B>& left, const DynPtr<T2, B>& right)
{
    return std::compare_three_way()(static_cast<const Referer*>(left.referer),
                                    static_cast<const Referer*>(right.referer));
}

// Handles of different roots have nothing to compare; without these, their truth values would be.
template <class T1, class B1, class T2, class B2>
    requires(!std::is_same_v<B1, B2>)
bool operator==(const DynPtr<T1, B1>&, const DynPtr<T2, B2>&) = delete;
template <class T1, class B1, class T2, class B2>
    requires(!std::is_same_v<B1, B2>)
bool operator<(const DynPtr<T1, B1>&, const DynPtr<T2, B2>&) = delete;
template <class T1, class B1, class T2, class B2>
    requires(!std::is_same_v<B1, B2>)
std::strong_ordering operator<=>(const DynPtr<T1, B1>&, const DynPtr<T2, B2>&) = delete;

template <class T, class B>
void DynPtr<T, B>::Speak(const char* a, const char* b) const
{
    SpeakPtr& speaker = SpeakPtr::theSpeaker();
    if (!referer || !referer->isAlive())
        speaker.printRS(b, a, typeid(DynPtr), referer != nullptr);
    else
        speaker.printRS(b, a, typeid(*rootBase()), referer->strong, referer->weak, typeid(DynPtr),
                        referer, referer->object);
}

template <class T, class B>
const DynPtr<T, T>& DynPtr<T, B>::getNullPtr()
{
    alignas(DynPtr<T, T>) static unsigned char storage[sizeof(DynPtr<T, T>)];
    static const DynPtr<T, T>& null = *new (storage) DynPtr<T, T>;
    return null;
}

template <class T, class B>
void DynPtr<T, B>::endLife(Referer& referer)
{
    auto* const object = static_cast<ReferenceBase<B>*>(referer.object);
    // Handles made and dropped in the extreme unction count around this value, so that none of
    // them ends the life again.
    referer.strong.store(kExtremeUnction, std::memory_order_relaxed);
    object->extremeUnction();
    referer.strong.store(kDead, std::memory_order_relaxed);
    referer.object = poisonedObject();
    if constexpr (kStandsInNetworks<B>) Watch::shapeChanges();
    if constexpr (std::is_same_v<B, Cacheable>) static_cast<B*>(object)->PreDestructor();
    delete object;
}

template <class T, class B>
void DynPtr<T, B>::reportLostShares() const
{
    // `strong` is 0 here, so that nothing is known of the object's type.
    SpeakPtr::theSpeaker().CriticalWarning(typeid(DynPtr), typeid(void), referer->object, referer);
}

template <class T, class B>
void DynPtr<T, B>::reportInconsistency(T* fresh) const
{
    if constexpr (!std::is_same_v<T, B>)
    {
        T* const kept = View::cached;
        if (!kept) throw std::bad_typeid(); // what `typeid` does, but not for a final class
        ReferenceBase<B>* const object = rootBase();
        SpeakPtr::theSpeaker().InconsistentDynPtr(typeid(*kept), typeid(T), typeid(*object), fresh,
                                                  kept, object, kept);
    }
}

} // namespace Tolmen
