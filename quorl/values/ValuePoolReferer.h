#pragma once

#include <quorl/Export.h>

namespace Quorl
{

/// A common base that modules give to what refers to pools.
class QUORL_API ValuePoolReferer
{
public:
    virtual ~ValuePoolReferer();
};

} // namespace Quorl
