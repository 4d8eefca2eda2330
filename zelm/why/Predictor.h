#pragma once

#include "Story.h"

namespace Zelm
{

/// Tells what a request of an object would do, and runs nothing: by the ages of the objects and
/// values as they are.
///
/// What an update will do is assumed: that it succeeds, and then gives all outputs of its object
/// values, and touches its state if there is one. An object is asked whether it demands to run.
///
/// \param isCancelled whether the request is cancelled from its beginning.
Account foreseen(const RefPtr<Quorl::VObject>& root, const RefPtr<Quorl::ValuePool>& context,
                 double precision, bool isCancelled = false);

} // namespace Zelm
