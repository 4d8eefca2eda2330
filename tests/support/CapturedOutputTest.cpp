#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <stdexcept>

namespace QuorlTest
{
namespace
{

TEST(CapturedOutput, TakesAllWaysOfWritingInOrder)
{
    CapturedOutput captured;
    std::printf("one ");
    std::fflush(stdout);
    std::cout << "two " << std::flush;
    ASSERT_EQ(::write(1, "three", 5), 5);

    EXPECT_EQ(captured.text(), "one two three");
}

TEST(CapturedOutput, TellsTheStreamsApart)
{
    CapturedOutput out(CapturedOutput::Out);
    CapturedOutput err(CapturedOutput::Err);
    std::printf("to out");
    std::fprintf(stderr, "to err");

    EXPECT_EQ(out.text(), "to out");
    EXPECT_EQ(err.text(), "to err");
}

TEST(CapturedOutput, LeavesOutWhatWasWrittenBeforeAndAfter)
{
    std::printf("[before]");
    CapturedOutput captured;
    std::printf("within");
    const std::string text = captured.text();
    std::printf("[after]\n");

    EXPECT_EQ(text, "within");
    EXPECT_EQ(captured.text(), "within");
}

TEST(CapturedOutput, PutsTheStreamBackWithoutBeingAsked)
{
    {
        const CapturedOutput forgotten;
        std::printf("lost");
    }

    EXPECT_EQ(outputOf([] { std::printf("again"); }), "again");
}

TEST(CapturedOutput, RefusesToCaptureAStreamTwiceAtOnce)
{
    const CapturedOutput first;

    EXPECT_THROW(CapturedOutput second, std::logic_error);
}

TEST(CapturedOutput, HoldsMoreThanABufferful)
{
    const std::string text = outputOf([] {
        for (int i = 0; i < 100000; ++i) std::putchar('x');
    });

    EXPECT_EQ(text, std::string(100000, 'x'));
}

} // namespace
} // namespace QuorlTest
