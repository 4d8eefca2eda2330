#pragma once

#include <quorl/foundation/Interface.h>
#include <quorl/objects/VObject.h>

#include <utility>
#include <vector>

namespace Geoid
{

/// What ran under a request that it is attached to, in the order in which it did. Keeps the objects
/// alive.
class Journal final : public Tolmen::Interface<Journal>
{
public:
    /// An update function: notes the object in the journal of the request, if there is one.
    static bool noteRun(Quorl::VObject* object, Quorl::VRequest& request, double precision);

    /// Gives what was noted since the last call.
    std::vector<Quorl::RefPtr<Quorl::VObject>> take() { return std::exchange(runs_, {}); }

private:
    std::vector<Quorl::RefPtr<Quorl::VObject>> runs_;
};

} // namespace Geoid
