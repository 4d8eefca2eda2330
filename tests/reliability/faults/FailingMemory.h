#pragma once

#include <functional>

namespace QuorlTest
{

/// While this lives, an allocation of the process fails: that with the given number, from 1 on; and
/// those behind it, if that is wanted. At most one at a time.
class FailingMemory
{
public:
    enum Extent
    {
        Once,
        FromThenOn,
    };

    explicit FailingMemory(long number, Extent extent = Once);
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
    ~FailingMemory();

    /// Whether there were as many allocations, so that one has failed.
    bool hasFailed() const;

    /// How many blocks the process has at present.
    static long blocks();
};

using Work = std::function<void()>;

/// Does something with an allocation that fails. An exception that nothing failed for is a failure
/// of the test. What the kernel says meanwhile is not of interest.
/// \return whether there were as many allocations, so that one has failed.
bool runWithFailure(const Work& work, long number,
                    FailingMemory::Extent extent = FailingMemory::Once);

} // namespace QuorlTest
