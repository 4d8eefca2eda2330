#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// Names the object in trouble.
class QUORL_API VObjectException
{
public:
    explicit VObjectException(const WeakPtr<VObject>& object);
    virtual ~VObjectException();

    WeakPtr<VObject> Object;
};

} // namespace Quorl
