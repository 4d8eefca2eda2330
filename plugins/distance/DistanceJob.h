#pragma once

#include "Field.h"

#include <quorl/tasks/VTaskMessage.h>
#include <quorl/values/ValuePool.h>

#include <atomic>

namespace Maps
{

/// The distances of one context as they are to be found.
class DistanceJob final : public Quorl::VTaskMessage
{
public:
    DistanceJob(const Field& givenHeights, double givenLevel,
                const Quorl::WeakPtr<Quorl::ValuePool>& pool)
        : heights(givenHeights), level(givenLevel), context(pool), hasContext(pool)
    {
    }

    const Field heights;
    const double level; // metres
    const Quorl::WeakPtr<Quorl::ValuePool> context;
    const bool hasContext;
    std::atomic<bool> isGivenUp = false; // told by the network's thread, asked by the task's
};

} // namespace Maps
