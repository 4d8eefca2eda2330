#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/InterfaceBase.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/mutex.h>
#include <quorl/objects/LevelLog.h>
#include <quorl/objects/Task.h>

#include <cstdint>
#include <map>
#include <typeinfo>

namespace Quorl
{

/// The ticket of one evaluation on its way through the network: names the context, collects the
/// youngest connection met, and can be asked whether it was cancelled.
///
/// Copies belong to the same evaluation. Usually a local of whoever starts one. Its age is the
/// moment at which the ticket was made. Threads: the mutex is for users; the kernel does not take
/// it.
class QUORL_API VRequest : public Ageable, public Tolmen::mutex
{
public:
    /// The identity of an evaluation, and the depths at which it reached objects. Its own number
    /// (`ID`) is what logs call the number of the request.
    class QUORL_API ID : public Tolmen::ReferenceBase<VRequest::ID>
    {
    public:
        using Level = LevelLog::Level;

        ID();
        ~ID() override;

        /// Records that `object` was reached from `caller` at `level`. Objects are told by their
        /// numbers, reduced to 32 bits. Of several callers at one extreme level the first stays.
        void considerLevel(int level, long object, long caller);

        /// The records by the numbers of the objects. What is recorded later shows when this is
        /// asked again.
        const std::map<std::int32_t, Level>& levels() const;

        int Unused = 0; ///< for modules

    private:
        friend class Repeats;
        friend class RequestPlan;
        friend class RequestPlans;
        friend class VTraceRequestID;

        /// Whether it is of a class of others, whose end may do anything.
        bool isForeign() const { return typeid(*this) != typeid(ID); }

        LevelLog log_;
    };

    /// Thrown by nobody in the kernel.
    class QUORL_API Incomplete
    {
    public:
        ~Incomplete() = default;
    };

    VRequest(const RefPtr<ValuePool>& pool, bool flag);

    /// Another ticket of the same evaluation, made now. What the other has found, and what was
    /// attached to it, are left to it.
    VRequest(const VRequest& other);
    VRequest& operator=(const VRequest&) = delete;
    virtual ~VRequest();

    /// Polled during the evaluation; false by default.
    virtual bool isCancelled() const;

    /// Takes over what a copy has found, if that is strictly younger.
    void updateFrom(const VRequest& other);

    /// Attaches a service to this ticket; to be found in `Attachments`.
    void addInterface(const RefPtr<Tolmen::InterfaceBase>& interface);

    bool Flag;
    Ageable NewestConnection{Ageable::Ooooold}; ///< the youngest connection age that was met
    std::int32_t NewestConnectionObject = -1;   ///< the number of the object that has it
    RefPtr<ValuePool> Pool;                     ///< may be null
    RefPtr<Task> Attachments;                   ///< null until something is attached
    RefPtr<VRequest::ID> Id;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VRequest::ID>;
} // namespace Tolmen
