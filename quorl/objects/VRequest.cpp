#include <quorl/objects/VRequest.h>

#include <quorl/objects/OwnOperations.h>
#include <quorl/objects/Repeats.h>
#include <quorl/values/ValuePool.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VRequest::ID>;
} // namespace Tolmen

namespace Quorl
{

VRequest::ID::ID() = default;
VRequest::ID::~ID() = default;

void VRequest::ID::considerLevel(int level, long object, long caller)
{
    Repeats::realizeAll();
    const auto callerNumber = static_cast<std::int32_t>(caller);
    log_.add(static_cast<std::int32_t>(object), {level, level, 1, callerNumber, callerNumber});
}

const std::map<std::int32_t, VRequest::ID::Level>& VRequest::ID::levels() const
{
    Repeats::realizeAll();
    return log_.table();
}

VRequest::VRequest(const RefPtr<ValuePool>& pool, bool flag)
    : Flag(flag), Pool(pool), Id(new VRequest::ID)
{
    OwnOperations::learnDefaults(*this);
}

// A ticket of its own: neither its moment nor its mutex is the other's.
VRequest::VRequest(const VRequest& other) // NOLINT(bugprone-copy-constructor-init)
    : Ageable(), Tolmen::mutex(), Flag(other.Flag), Pool(other.Pool), Id(other.Id)
{
    OwnOperations::learnDefaults(*this);
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
