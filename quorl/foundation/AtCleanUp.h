#pragma once

#include <quorl/foundation/SteadyChange.h>

#include <utility>

namespace Tolmen
{

/// Does something in the clean-up of statics, in the reverse order of their making.
///
/// For tables of the process that own. Their storage is never given back, so that what ends later
/// may still ask them and enter something; what they own ends here:
///
///     static auto& table = *new Table;
///     static const AtCleanUp end([] { emptySteadily(table); });
template <class Act>
class AtCleanUp
{
public:
    explicit AtCleanUp(Act act) : act_(std::move(act)) {}
    AtCleanUp(const AtCleanUp&) = delete;
    AtCleanUp& operator=(const AtCleanUp&) = delete;
    ~AtCleanUp() { act_(); }

private:
    const Act act_;
};

} // namespace Tolmen
