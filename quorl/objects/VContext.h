#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/Interface.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/mutex.h>

#include <cstdint>

namespace Quorl
{

/// In which pool, and at which moment of the wall clock, an action takes place. The moment is taken
/// once, so that all that is done under one context sees the same time.
///
/// Threads: made and used by one. The mutex is for users; the kernel does not take it.
class QUORL_API VContext : public Tolmen::mutex
{
public:
    /// A moment, in local time.
    struct QUORL_API RealTime
    {
        double Seconds = 0; ///< since 1 January 1601, from the calendar time as it stands
        std::int32_t Year = 0;
        std::int32_t Month = 0; ///< 1 to 12
        std::int32_t Day = 0;   ///< 1 to 31
        std::int32_t Hour = 0;
        std::int32_t Minute = 0;
        std::int32_t Second = 0;
        std::int32_t Millisecond = 0;

        void setNow(); ///< from the local clock
    };

    /// A moment that replaces the clock: a recorded or simulated one.
    class QUORL_API TimeInterface : public Tolmen::Interface<RealTime>, public RealTime
    {
    public:
        TimeInterface();
        ~TimeInterface() override;
    };

    /// What a caller attaches to its contexts.
    class QUORL_API Addendum : public Tolmen::Intercube, public Tolmen::ReferenceBase<Addendum>
    {
    public:
        Addendum();
        ~Addendum() override;

        /// Pins the present moment: contexts with this addendum carry it from now on.
        void setNow();
    };

    explicit VContext(const RefPtr<Addendum>& addendum);
    VContext(const RefPtr<ValuePool>& pool, const RefPtr<Addendum>& addendum);

    /// With the provider's pool, if it is alive and has one.
    explicit VContext(const RefPtr<ValuePoolProvider>& provider);

    virtual ~VContext();

    /// Takes the moment that the addendum has pinned, else that of the clock.
    void setTime();

    RealTime Time;
    std::int64_t Spare = 0; ///< for users; cleared by `setTime`
    RefPtr<ValuePool> Pool; ///< may be null
    RefPtr<Addendum> Extra; ///< may be null

private:
    const RealTime* pinnedTime() const;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VContext::Addendum>;
} // namespace Tolmen
