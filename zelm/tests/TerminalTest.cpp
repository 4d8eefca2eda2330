#include "HostFixture.h"

#include <gtest/gtest.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>

namespace Zelm
{
namespace
{

constexpr const char* kFailing = R"("objects": [
    {"name": "a", "creator": "Test/Failing", "values": {"way": "false"}}])";
constexpr char kEscape = '\033';

/// The program, started from a terminal.
class Terminal : public HostFixture
{
protected:
    /// Runs the program on a terminal. \return what that showed.
    std::string shown(const std::string& arguments, const std::string& environment = "")
    {
        int terminal = -1;
        const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0)
        {
            ::setenv("TERM", "xterm", 1);
            ::unsetenv("NO_COLOR");
            ::execl("/bin/sh", "sh", "-c", commandOf(arguments, environment).c_str(), nullptr);
            ::_exit(127);
        }
        std::string text;
        std::array<char, 4096> bytes{};
        for (ssize_t got = 0; (got = ::read(terminal, bytes.data(), bytes.size())) > 0;)
            text.append(bytes.data(), static_cast<std::size_t>(got));
        ::close(terminal);
        ::waitpid(child, &status, 0);
        return text;
    }
};

TEST_F(Terminal, IsShownColours)
{
    runNetwork(kFailing);

    const std::string text = shown("run a.json");

    EXPECT_NE(text.find("\033[1mdefault: a\033[0m"), std::string::npos) << text;
    EXPECT_NE(text.find("\033[1;31m  failed\033[0m"), std::string::npos) << text;
    EXPECT_NE(text.find("\033[1;31mzelm:\033[0m default: a has failed"), std::string::npos);
}

TEST_F(Terminal, IsShownColoursAloneWhereItShowsTheText)
{
    runNetwork(kFailing);

    EXPECT_EQ((out + err).find(kEscape), std::string::npos) << out << err;
    EXPECT_EQ(shown("run a.json >out 2>err").find(kEscape), std::string::npos);
    EXPECT_EQ(bytesOf(folder / "out").find(kEscape), std::string::npos);
    EXPECT_EQ(bytesOf(folder / "err").find(kEscape), std::string::npos);
    EXPECT_NE(shown("run a.json >out").find("\033[1;31mzelm:"), std::string::npos);
    EXPECT_EQ(bytesOf(folder / "out").find(kEscape), std::string::npos);
}

TEST_F(Terminal, IsShownNoColoursIfThatIsWanted)
{
    runNetwork(kFailing);

    for (const char* environment : {"NO_COLOR=1", "TERM=dumb"})
    {
        const std::string text = shown("why a.json a", environment);
        EXPECT_NE(text.find("zelm: default: a has failed"), std::string::npos) << text;
        EXPECT_EQ(text.find("\033[1"), std::string::npos) << text;
    }
}

TEST_F(Terminal, IsShownHowFarLongWorkHasCome)
{
    runNetwork(R"("objects": [{"name": "a", "creator": "Test/Sum"},
        {"name": "b", "creator": "Test/Sum", "inputs": {"left": "a.sum"}}])");
    EXPECT_EQ(err, "") << "and nothing elsewhere";

    const std::string text = shown("run a.json");

    EXPECT_NE(text.find("\r\033[Kdefault: a 0/2"), std::string::npos) << text;
    EXPECT_NE(text.find("\r\033[K", text.find("default: a 0/2")), std::string::npos) << "it goes";
    EXPECT_EQ(shown("run a.json", "TERM=dumb").find(kEscape), std::string::npos);
}

TEST_F(Terminal, IsShownWarningsOnLinesOfTheirOwn)
{
    runNetwork(R"("objects": [{"name": "a", "creator": "Test/Warning"}])");
    EXPECT_EQ(err, "zelm: warning: it will rain\n");

    const std::string text = shown("run a.json");

    EXPECT_NE(text.find("\r\033[Kdefault: a 0/1\r\033[K\033[1;31mzelm:\033[0m warning:"),
              std::string::npos)
        << text;
}

} // namespace
} // namespace Zelm
