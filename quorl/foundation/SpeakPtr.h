#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/Forward.h>

#include <typeinfo>

namespace Tolmen
{

/// Where handles report what should not happen. Nothing is thrown and nothing stops: the reports
/// must return.
///
/// The default speaker writes one line for each report to standard error. It is never destroyed,
/// so that handles may report during the clean-up of the process.
class TOLMEN_API SpeakPtr
{
public:
    virtual ~SpeakPtr();

    static SpeakPtr& theSpeaker();

    /// Replaces the speaker; null restores the default. Not owned: it must outlive its time in
    /// office.
    /// \return the previous one, null if it was the default.
    static SpeakPtr* setSpeaker(SpeakPtr* speaker);

    /// A handle ends with both counters at 0 on a block that was not freed.
    virtual void CriticalWarning(const std::type_info& handle, const std::type_info& object,
                                 const void* objectAddress, const void* referer);

    /// A handle is constructed from itself.
    virtual void SelfConstruction(const std::type_info& handle, const void* handleAddress,
                                  const void* referer);

    /// The pointer that a handle keeps differs from a fresh cast. `behind` is the type behind the
    /// kept pointer, `wanted` the handle's, `actual` that of the object.
    virtual void InconsistentDynPtr(const std::type_info& behind, const std::type_info& wanted,
                                    const std::type_info& actual, const void* fresh,
                                    const void* cached, const void* object, const void* cached2);

    /// The state of a handle that is null, or `invalid`, which is to say dead.
    virtual void printRS(const char* b, const char* a, const std::type_info& handle, bool invalid);

    /// The state of a handle to a live object.
    virtual void printRS(const char* b, const char* a, const std::type_info& object, long strong,
                         long weak, const std::type_info& handle, const void* referer,
                         const void* objectAddress);
};

} // namespace Tolmen
