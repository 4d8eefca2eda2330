#include <quorl/objects/VRequest.h>

#include <quorl/values/ValuePool.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VRequest::ID>;
} // namespace Tolmen

namespace Quorl
{

VRequest::ID::ID() = default;
VRequest::ID::~ID() = default;

void VRequest::ID::considerLevel(int level, long object, long callerNumber)
{
    const auto caller = static_cast<std::int32_t>(callerNumber);
    Level& record = levels_[static_cast<std::int32_t>(object)];
    if (record.Count < 1)
    {
        record = {level, level, 1, caller, caller};
        return;
    }
    if (level < record.MinLevel)
    {
        record.MinLevel = level;
        record.MinCaller = caller;
    }
    if (level > record.MaxLevel)
    {
        record.MaxLevel = level;
        record.MaxCaller = caller;
    }
    ++record.Count;
}

VRequest::VRequest(const RefPtr<ValuePool>& pool, bool flag)
    : Flag(flag), Pool(pool), Id(new VRequest::ID)
{
}

// A ticket of its own: neither its moment nor its mutex is the other's.
VRequest::VRequest(const VRequest& other) // NOLINT(bugprone-copy-constructor-init)
    : Ageable(), Tolmen::mutex(), Flag(other.Flag), Pool(other.Pool), Id(other.Id)
{
}

VRequest::~VRequest() = default;

bool VRequest::isCancelled() const
{
    return false;
}

void VRequest::updateFrom(const VRequest& other)
{
    if (!(NewestConnection < other.NewestConnection)) return;
    NewestConnection = other.NewestConnection;
    NewestConnectionObject = other.NewestConnectionObject;
}

void VRequest::addInterface(const RefPtr<Tolmen::InterfaceBase>& interface)
{
    if (!Attachments) Attachments = new Task;
    Attachments->addInterface(interface);
}

} // namespace Quorl
