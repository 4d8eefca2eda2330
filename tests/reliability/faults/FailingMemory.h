#pragma once

namespace QuorlTest
{

/// While this lives, one allocation of the process fails: that with the given number, from 1 on. At
/// most one at a time.
class FailingMemory
{
public:
    explicit FailingMemory(long number);
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
    ~FailingMemory();

    /// Whether there were as many allocations, so that one has failed.
    bool hasFailed() const;

    /// How many blocks the process has at present.
    static long blocks();
};

} // namespace QuorlTest
