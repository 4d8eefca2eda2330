#include <tests/reliability/faults/ProcessOutcome.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>

namespace QuorlTest
{
namespace
{

// As exit codes, which are none of a sanitizer.
constexpr int kDone = 0;
constexpr int kFailed = 2;
constexpr int kBroken = 3;

/// \return an exit code.
int endOf(const Work& work, const std::function<bool()>& isWhole, long number,
          FailingMemory::Extent extent)
{
    // What the kernel says, and the library of a program that ends itself.
    if (!std::freopen("/dev/null", "w", stdout) || !std::freopen("/dev/null", "w", stderr))
        return kBroken;
    bool hasThrown = false;
    bool hasFailed = false;
    {
        const FailingMemory memory(number, extent);
        try
        {
            work();
        }
        catch (const std::exception&)
        {
            hasThrown = true;
        }
        hasFailed = memory.hasFailed();
    }
    if ((hasThrown && !hasFailed) || !isWhole()) return kBroken;
    return hasFailed ? kFailed : kDone;
}

} // namespace

Outcome outcomeOf(const Work& work, const std::function<bool()>& isWhole, long number,
                  FailingMemory::Extent extent)
{
    const ::pid_t child = ::fork();
    if (child == 0) ::_exit(endOf(work, isWhole, number, extent));
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child) return Outcome::Broken;
    if (WIFSIGNALED(status)) return WTERMSIG(status) == SIGABRT ? Outcome::Ended : Outcome::Broken;
    return WEXITSTATUS(status) == kDone     ? Outcome::Done
           : WEXITSTATUS(status) == kFailed ? Outcome::Failed
                                            : Outcome::Broken;
}

} // namespace QuorlTest
