#include <quorl/objects/VContext.h>

#include <quorl/platform/CalendarTime.h>
#include <quorl/values/ValuePool.h>
#include <quorl/values/ValuePoolProvider.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VContext::Addendum>;
} // namespace Tolmen

namespace Quorl
{

void VContext::RealTime::setNow()
{
    const Tolmen::Platform::CalendarTime now = Tolmen::Platform::localCalendarTime();
    Year = now.year;
    Month = now.month;
    Day = now.day;
    Hour = now.hour;
    Minute = now.minute;
    Second = now.second;
    Millisecond = now.millisecond;
    Seconds = static_cast<double>(Tolmen::Platform::ticksSince1601(now)) * 1e-07;
}

VContext::TimeInterface::TimeInterface() = default;
VContext::TimeInterface::~TimeInterface() = default;

VContext::Addendum::Addendum() = default;
VContext::Addendum::~Addendum() = default;

void VContext::Addendum::setNow()
{
    const RefPtr<TimeInterface> moment(new TimeInterface);
    moment->setNow();
    addInterface(moment);
}

VContext::VContext(const RefPtr<Addendum>& addendum) : Extra(addendum)
{
    setTime();
}

VContext::VContext(const RefPtr<ValuePool>& pool, const RefPtr<Addendum>& addendum)
    : Pool(pool), Extra(addendum)
{
    setTime();
}

VContext::VContext(const RefPtr<ValuePoolProvider>& provider)
{
    if (provider && provider->pool) Pool = provider->pool;
    setTime();
}

VContext::~VContext() = default;

void VContext::setTime()
{
    Spare = 0;
    if (const RealTime* const pinned = pinnedTime())
        Time = *pinned;
    else
        Time.setNow();
}

/// Whatever stands for a moment in the addendum, be it a `TimeInterface` or a class of its own.
const VContext::RealTime* VContext::pinnedTime() const
{
    if (!Extra) return nullptr;
    const RefPtr<Tolmen::InterfaceBase> found = Extra->findInterface(typeid(RealTime));
    return dynamic_cast<const RealTime*>(found.rawptr());
}

} // namespace Quorl
