#pragma once

#include <new>

namespace Tolmen
{

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
        ReferenceBase<B>* const object = rootBase();
        SpeakPtr::theSpeaker().InconsistentDynPtr(typeid(*kept), typeid(T), typeid(*object),
                                                  fresh, kept, object, kept);
    }
}

} // namespace Tolmen
