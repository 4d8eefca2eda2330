#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>

#include <cstdint>

namespace Quorl
{

/// What one request at one object says on standard output. All words of the walk stand here, apart
/// from its decisions; how many are spoken is `VObject::VERBOSE_REQUEST`.
///
/// Lines begin with as many blanks as walks are under way. That number is one for the process and
/// serves the logs alone.
class RequestTrace
{
public:
    /// A walk over the inputs is under way, for as long as this lives.
    class Indentor
    {
    public:
        Indentor() { ++indnt; }
        ~Indentor() { --indnt; }
        Indentor(const Indentor&) = delete;
        Indentor& operator=(const Indentor&) = delete;

        static std::int32_t indnt;
    };

    /// \param age the object's age in the context of the request, as it changes.
    RequestTrace(const VObject& object, const VRequest& request, const Ageable& age)
        : object_(object), request_(request), age_(age)
    {
    }

    // The object that is asked
    void begin(double precision) const;
    void recursionStopped() const;
    void occupied() const; ///< at any verbosity
    void walked(bool isActionDemanded) const;
    void stateIsOld(const Ageable& state) const;
    void poolIsMissing() const; ///< if it is
    void notUpdated() const;
    void updating(const Ageable& newestInput, bool isActionDemanded, const string& reason) const;
    void updateFailed(const Ageable& newestInput) const;
    void updated(const Ageable& newestInput, const Ageable& ageBefore) const;

    /// The update threw; to standard error, at any verbosity.
    void exception(const string& text) const;

    // One of its inputs
    void input(const VSlot& slot) const;
    void inputIsNewer(const VSlot& slot, const Ageable& parameter) const;
    void inputAge(const VSlot& slot, const Ageable& parameter, const Ageable& newestInput) const;
    void inputHasNoObject() const;
    void pureInputIsNewer(const VSlot& slot, const Ageable& parameter) const;
    void sourceIsOlderThanInput(const VSlot& slot, const Ageable& parameter,
                                const VObject& source) const; ///< if it is
    void sourceIsNotReady(const VObject& source) const;       ///< at any verbosity
    void cycleStopped(const VObject& source) const;
    void sourceWasModified(const VObject& source, const Ageable& parameter,
                           const Ageable& newestInput) const;
    void sourceIsNewer(const VSlot& slot, const Ageable& sourceAge) const;
    void sourceIsConstant(const VObject& source, const Ageable& sourceAge) const;

private:
    const VObject& object_;
    const VRequest& request_;
    const Ageable& age_;
};

} // namespace Quorl
