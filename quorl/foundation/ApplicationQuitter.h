#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// Something that wants to be asked when the application is told to quit. It is entered in
/// `VGlobals::quitters` by being made, weakly: it ends with its owner's last handle.
class QUORL_API ApplicationQuitter : public Tolmen::ReferenceBase<ApplicationQuitter>
{
public:
    ApplicationQuitter();
    ~ApplicationQuitter() override;

    /// Called by `VGlobals::quit`.
    virtual void quit() = 0;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::ApplicationQuitter>;
} // namespace Tolmen
