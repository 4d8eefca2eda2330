#include <quorl/platform/Question.h>
#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

namespace Tolmen::Platform
{
namespace
{

/// Asks in a process of its own that has a terminal, and types a line there.
/// \param prepare what that process does before.
/// \return the answer, and all that the terminal has shown.
std::pair<int, std::string> answerTo(const std::string& typed, void (*prepare)() = [] {})
{
    int terminal = -1;
    const ::pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0)
    {
        prepare();
        std::exit(askOnTerminal("Caption", "Text"));
    }
    EXPECT_EQ(::write(terminal, typed.data(), typed.size()), static_cast<::ssize_t>(typed.size()));
    std::string shown;
    char letter = 0;
    while (::read(terminal, &letter, 1) == 1) shown += letter;
    int status = 0;
    ::waitpid(child, &status, 0);
    ::close(terminal);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, shown};
}

TEST(AskOnTerminal, IgnoresSilentlyWithoutATerminal)
{
    EXPECT_EQ(QuorlTest::errorOutputOf([] { EXPECT_EQ(askOnTerminal("c", "t"), Ignore); }), "");
}

TEST(AskOnTerminal, IgnoresSilentlyWhereTheQuestionWouldNotBeSeen)
{
    const auto [answer, shown] = answerTo("a\n", [] {
        if (!std::freopen("/dev/null", "w", stderr)) std::exit(-1);
    });
    EXPECT_EQ(answer, Ignore);
    EXPECT_EQ(shown.find("Caption"), std::string::npos) << shown;
}

TEST(AskOnTerminal, ShowsWhatIsAskedAndTakesALetter)
{
    const auto [answer, shown] = answerTo("a\n");
    EXPECT_EQ(answer, Abort);
    EXPECT_NE(shown.find("Caption\r\n\r\nText\r\n\r\n[Abort] [Ignore All] [Ignore] (a/l/i): "),
              std::string::npos)
        << shown;
    EXPECT_EQ(answerTo("L and more\n").first, IgnoreAll);
    EXPECT_EQ(answerTo("l\n").first, IgnoreAll);
    EXPECT_EQ(answerTo("i\n").first, Ignore);
}

TEST(AskOnTerminal, IgnoresWhereNothingIsAnswered)
{
    EXPECT_EQ(answerTo("\n").first, Ignore);
    EXPECT_EQ(answerTo("\x04").first, Ignore) << "the end of the input";
    EXPECT_EQ(answerTo("x\n").first, Ignore);
}

} // namespace
} // namespace Tolmen::Platform
