#include <quorl/objects/VTraceRequestID.h>

#include <cstdio>
#include <utility>

namespace Quorl
{

VTraceRequestID::VTraceRequestID() = default;
VTraceRequestID::~VTraceRequestID() = default;

bool VTraceRequestID::hasRequest(const VRequest& request) const
{
    return Current == request.Id;
}

bool VTraceRequestID::addRequest(const VRequest& request)
{
    const Tolmen::Watch::ShapeChange change;
    return enter(request);
}

void VTraceRequestID::removeRequest(const VRequest& /*request*/)
{
    const Tolmen::Watch::ShapeChange change;
    leave();
}

bool VTraceRequestID::endsForeignIdentity() const
{
    const RefPtr<VRequest::ID>& id = Previous;
    return id.referer && id.referer->strong.load(std::memory_order_relaxed) == 1 && id->isForeign();
}

bool VTraceRequestID::enter(const VRequest& request)
{
    if (Current) return false;
    std::swap(Previous.quietly(), Latest.quietly());
    Latest.quietly() = RefPtr<VRequest::ID>(request.Id);
    Current.quietly() = request.Id;
    return true;
}

void VTraceRequestID::leave()
{
    Current.quietly() = WeakPtr<VRequest::ID>();
}

bool VTraceRequestID::ExecutionGraphHasChanged() const
{
    if (Previous == Latest)
    {
        std::puts("bool\tVTraceRequestID::ExecutionGraphHasChanged(): Same execution graph.");
        return false;
    }
    if (!Previous || !Latest) return true;
    const auto& before = Previous->levels();
    for (const auto& [object, now] : Latest->levels())
    {
        const auto known = before.find(object);
        if (known == before.end() || known->second.MinLevel != now.MinLevel ||
            known->second.MaxLevel != now.MaxLevel)
            return true;
    }
    return false;
}

} // namespace Quorl
