#pragma once

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

} // namespace QuorlTest
