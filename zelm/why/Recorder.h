#pragma once

#include "Story.h"

#include <quorl/objects/VRequest.h>

#include <functional>
#include <memory>
#include <optional>

namespace Zelm
{

/// A ticket that sees what its evaluation does.
///
/// A walk asks its ticket at each input of each object, and once more when it has to decide,
/// whether it was cancelled. That tells where it is; the rest can be asked of the objects: their
/// ages, who is inside, and who ran. Walks with such a ticket go every way, as often as there are
/// paths.
///
/// What an update does to other objects of the network while it is under way is not seen. An update
/// that fails is known by the age that its object keeps: of one that ran without anything newer,
/// success is assumed.
class Recorder final : public Quorl::VRequest
{
public:
    /// \param isToBeCancelled is asked each time.
    explicit Recorder(const RefPtr<Quorl::ValuePool>& pool,
                      std::function<bool()> isToBeCancelled = {});
    ~Recorder() override;

    bool isCancelled() const override;

    /// Evaluates the network upstream of an object, and gives an account of it. Once for a ticket.
    /// What an update throws stands in the account; other evaluations can follow.
    Account evaluate(const RefPtr<Quorl::VObject>& root, double precision);

    /// What was decided at the object where the walk is just ending a visit; nothing elsewhere.
    std::optional<Story> decided() const;

private:
    class Watcher;

    static bool noteRun(Quorl::VObject* object, VRequest& request, double precision);

    const std::unique_ptr<Watcher> watcher_; // behind a pointer, since a constant ticket is asked
};

} // namespace Zelm
