#pragma once

#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <string>

namespace QuorlTest
{

/// For tests of a program as it is started from a shell.
class ProgramFixture : public testing::Test
{
protected:
    /// Runs a line of the shell to its end, and keeps what came of it.
    void runCommand(const std::string& line)
    {
        const std::string command =
            line + " >" + (streams_ / "out").string() + " 2>" + (streams_ / "err").string();
        const int answer = std::system(command.c_str());
        status = WIFEXITED(answer) ? WEXITSTATUS(answer) : -1;
        out = bytesOf(streams_ / "out");
        err = bytesOf(streams_ / "err");
    }

    int status = -1; ///< that the program ended with; -1 if a signal ended it
    std::string out; ///< what it wrote to its standard output
    std::string err; ///< and to its standard error

private:
    const TemporaryFolder streams_;
};

} // namespace QuorlTest
