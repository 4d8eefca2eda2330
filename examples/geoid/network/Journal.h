#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/objects/VObject.h>

#include <utility>
#include <vector>

namespace Geoid
{

/// What ran, in the order in which it did. Keeps the objects alive.
class Journal
{
public:
    void note(const Quorl::RefPtr<Quorl::VObject>& object) { runs_.push_back(object); }

    /// Gives what was noted since the last call.
    std::vector<Quorl::RefPtr<Quorl::VObject>> take() { return std::exchange(runs_, {}); }

private:
    std::vector<Quorl::RefPtr<Quorl::VObject>> runs_;
};

} // namespace Geoid
