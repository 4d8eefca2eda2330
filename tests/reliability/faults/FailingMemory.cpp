#include <tests/reliability/faults/FailingMemory.h>

#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <exception>
#include <new>

namespace QuorlTest
{
namespace
{

constinit std::atomic<long> theBlocks = 0;
constinit std::atomic<long> theCallsLeft = 0; // 0 where none is to fail any more
constinit std::atomic<bool> isExhausted = false;
constinit std::atomic<bool> isToStayExhausted = false;

bool isToFail()
{
    if (theCallsLeft.load() > 0 && theCallsLeft.fetch_sub(1) == 1)
    {
        isExhausted = isToStayExhausted.load();
        return true;
    }
    return isExhausted;
}

} // namespace

FailingMemory::FailingMemory(long number, Extent extent)
{
    isToStayExhausted = extent == FromThenOn;
    theCallsLeft = number;
}

FailingMemory::~FailingMemory()
{
    theCallsLeft = 0;
    isExhausted = false;
}

bool FailingMemory::hasFailed() const
{
    return theCallsLeft == 0;
}

long FailingMemory::blocks()
{
    return theBlocks;
}

bool runWithFailure(const Work& work, long number, FailingMemory::Extent extent)
{
    const CapturedOutput captured;
    const FailingMemory memory(number, extent);
    try
    {
        work();
    }
    catch (const std::exception& error) // by whatever is said of it
    {
        EXPECT_TRUE(memory.hasFailed()) << error.what();
    }
    return memory.hasFailed();
}

} // namespace QuorlTest

// Replace those of the standard library in the whole process.

void* operator new(std::size_t size)
{
    void* const block = QuorlTest::isToFail() ? nullptr : std::malloc(size > 0 ? size : 1);
    if (!block) throw std::bad_alloc();
    ++QuorlTest::theBlocks;
    return block;
}

void operator delete(void* block) noexcept
{
    if (block) --QuorlTest::theBlocks;
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept
{
    operator delete(block);
}
