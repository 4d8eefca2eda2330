#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/RefPtr.h>

#include <cstdint>

namespace Quorl
{

/// Learns that connections have changed, on behalf of somebody who holds a picture of the network.
///
/// Its age is that of the newest connection that it has heard of; the present clock at first. The
/// holder compares that with its own record; nothing is rebuilt from here.
class QUORL_API VConnectionValidator : public Ageable,
                                       public Tolmen::ReferenceBase<VConnectionValidator>
{
public:
    VConnectionValidator();
    ~VConnectionValidator() override;

    /// Takes over the newest connection that a request has met, if that is younger.
    void taintFromRequest(const VRequest& request);

    std::int32_t Taint = 0; ///< number of the object that last reported a change

private:
    friend class VConnectionValidatorList;

    bool isEntered_ = false; // in one of these, at some time
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VConnectionValidator>;
} // namespace Tolmen
