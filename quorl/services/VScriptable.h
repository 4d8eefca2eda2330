#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>

#include <memory>

namespace Quorl
{

/// Something that offers functors to scripts. A copy begins with none: functors belong to the
/// object that they were made for.
class QUORL_API VScriptable
{
public:
    VScriptable();
    VScriptable(const VScriptable& other);
    VScriptable& operator=(const VScriptable& other);
    virtual ~VScriptable();

private:
    struct Functors;

    const std::unique_ptr<Functors> functors_;
};

} // namespace Quorl
