#pragma once

#include <tests/reliability/faults/FailingCalls.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>
#include <tests/support/WorkingDirectory.h>

#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>

/// The system refuses a call now and then: files are whole or as they were, and what is said is
/// what the system said.
namespace QuorlTest
{

/// Stands in a folder of its own, which may have a module in it.
class SystemFaults : public testing::Test
{
protected:
    ~SystemFaults() override
    {
        Quorl::LeaveItems remover;
        if (Quorl::VModules::find("first.zelm")) Quorl::UnloadVModule("first.zelm", remover);
        Quorl::VGlobals::theGlobals().modules->clear();
    }

    static void copyModule() { std::filesystem::copy_file(GOOD_MODULE, "first.zelm"); }

    const TemporaryFolder folder_;
    const WorkingDirectory workingDirectory_{folder_.path()};
};

/// Hears of a signal while it lives.
class SignalHandler
{
public:
    SignalHandler(int signal, void (*handler)(int))
        : signal_(signal), former_(std::signal(signal, handler))
    {
    }
    SignalHandler(const SignalHandler&) = delete;
    SignalHandler& operator=(const SignalHandler&) = delete;
    ~SignalHandler() { std::signal(signal_, former_); }

private:
    const int signal_;
    void (*const former_)(int);
};

/// \return whether a process of its own, which is ended by a signal in that call, came to it.
inline bool isEndedIn(const char* call, const std::function<void()>& act, long number = 1)
{
    const ::pid_t child = ::fork();
    if (child == 0)
    {
        const FailingCall failing(call, number, 0, FailingCall::Kills);
        act();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

/// Does it where no file may grow beyond so many bytes. \return whether it did what is expected.
inline bool isDoneOnAFullDisk(::rlim_t most, const std::function<bool()>& act)
{
    const ::pid_t child = ::fork();
    if (child == 0)
    {
        const ::rlimit limit{most, most};
        std::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const bool isDone = act();
        ::_exit(isDone ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status == 0;
}

} // namespace QuorlTest
