#include <quorl/foundation/SpeakPtr.h>

#include <quorl/foundation/Typename.h>

#include <atomic>
#include <cstdio>
#include <new>

namespace Tolmen
{
namespace
{

std::atomic<SpeakPtr*>& replacement()
{
    static constinit std::atomic<SpeakPtr*> speaker{nullptr};
    return speaker;
}

/// Lives in storage of its own and is never destroyed: handles of other statics may still report.
SpeakPtr& defaultSpeaker()
{
    alignas(SpeakPtr) static unsigned char storage[sizeof(SpeakPtr)];
    static SpeakPtr* const speaker = new (storage) SpeakPtr;
    return *speaker;
}

const char* orEmpty(const char* text)
{
    return text ? text : "";
}

} // namespace

SpeakPtr::~SpeakPtr() = default;

SpeakPtr& SpeakPtr::theSpeaker()
{
    SpeakPtr* const speaker = replacement().load();
    return speaker ? *speaker : defaultSpeaker();
}

SpeakPtr* SpeakPtr::setSpeaker(SpeakPtr* speaker)
{
    return replacement().exchange(speaker);
}

void SpeakPtr::CriticalWarning(const std::type_info& handle, const std::type_info& object,
                               const void* objectAddress, const void* referer)
{
    std::fprintf(stderr, "%s: the count block %p of the object %p (%s) has no shares left\n",
                 Typename(handle).c_str(), referer, objectAddress, Typename(object).c_str());
}

void SpeakPtr::SelfConstruction(const std::type_info& handle, const void* handleAddress,
                                const void* referer)
{
    std::fprintf(stderr, "%s: the handle %p is constructed from itself (count block %p)\n",
                 Typename(handle).c_str(), handleAddress, referer);
}

void SpeakPtr::InconsistentDynPtr(const std::type_info& behind, const std::type_info& wanted,
                                  const std::type_info& actual, const void* fresh,
                                  const void* cached, const void* object, const void* /*cached2*/)
{
    std::fprintf(stderr, "a handle to %s keeps %p (%s), but the object %p (%s) is now cast to %p\n",
                 Typename(wanted).c_str(), cached, Typename(behind).c_str(), object,
                 Typename(actual).c_str(), fresh);
}

void SpeakPtr::printRS(const char* b, const char* a, const std::type_info& handle, bool invalid)
{
    std::fprintf(stderr, "%s%s %s: %s\n", orEmpty(b), orEmpty(a), Typename(handle).c_str(),
                 invalid ? "dead" : "null");
}

void SpeakPtr::printRS(const char* b, const char* a, const std::type_info& object, long strong,
                       long weak, const std::type_info& handle, const void* referer,
                       const void* objectAddress)
{
    std::fprintf(stderr, "%s%s %s: count block %p, strong %ld, weak %ld, object %p (%s)\n",
                 orEmpty(b), orEmpty(a), Typename(handle).c_str(), referer, strong, weak,
                 objectAddress, Typename(object).c_str());
}

} // namespace Tolmen
