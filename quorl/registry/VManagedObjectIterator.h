#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// Visits the objects of a domain; true goes on.
class QUORL_API VManagedObjectIterator
{
public:
    virtual ~VManagedObjectIterator();
    virtual bool apply(int priority, const RefPtr<VManagedObject>& object, const string& name) = 0;
};

} // namespace Quorl
