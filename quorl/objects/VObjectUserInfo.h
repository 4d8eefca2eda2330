#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Interface.h>

namespace Quorl
{

/// A tag among the interfaces of an object that names who made it.
class QUORL_API VObjectUserInfo : public Tolmen::Interface<VObjectUserInfo>
{
public:
    explicit VObjectUserInfo(const string& initialText);
    ~VObjectUserInfo() override;

    string text;
};

} // namespace Quorl
