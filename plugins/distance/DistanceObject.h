#pragma once

#include "DistanceJob.h"
#include "GridValues.h"

#include <quorl/kit/TypedSlot.h>
#include <quorl/tasks/VCotask.h>

#include <map>

namespace Maps
{

/// How far it is to the line where the heights cross a level. A coarse answer is there at once, and
/// a fine one when a task in the background has found it: it takes the place of the coarse one in
/// the turn of the host that follows. Without threads, the fine answer is found at once.
///
/// A new update of a context makes the task give up what it does for that context. At the end of
/// the object it gives up everything.
class DistanceToLevel final : public Quorl::VObject
{
public:
    using VObject::VObject;
    ~DistanceToLevel() override;

    bool update(Quorl::VRequest& request, double precision) override;

    /// Takes a fine answer over, on the thread of the network, unless a later one is on its way.
    void show(const Quorl::RefPtr<DistanceJob>& job, const Field& fine);

private:
    bool refine(const Quorl::RefPtr<DistanceJob>& job);
    void giveUp(const Quorl::WeakPtr<Quorl::ValuePool>& context);

    const Quorl::InputSlot<Field> heights_{*this, "heights", {}, Quorl::perContext()};
    const Quorl::InputSlot<double> level_{*this, "level", 0.0, Quorl::perContext()}; // metres
    const Quorl::OutputSlot<Field> distance_{*this, "distance"};                     // kilometres

    Quorl::VCotask tasks_{this, "tasks", 1000};
    std::map<Quorl::WeakPtr<Quorl::ValuePool>, Quorl::RefPtr<DistanceJob>> latest_;
};

} // namespace Maps
