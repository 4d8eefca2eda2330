#include <tests/support/ProgramFixture.h>

#include <gtest/gtest.h>

#include <string>

/// Processes that use the kernel before and behind `main`, or end where nobody expects it: each
/// says how far it came, and ends as it wished to.
namespace QuorlTest
{
namespace
{

class Exit : public ProgramFixture
{
protected:
    void run(const std::string& program, const std::string& arguments = "")
    {
        runCommand("exec " EXIT_PROGRAMS "/" + program + " " + arguments);
    }

    void expectQuietEnd(const std::string& told) const
    {
        EXPECT_EQ(out, told);
        EXPECT_EQ(err, "");
        EXPECT_EQ(status, 0);
    }
};

TEST_F(Exit, AStaticMayUseTheKernelAtItsEnd)
{
    for (const char* const use : {"", "first"})
    {
        run("StaticBeforeTheKernel", use);
        expectQuietEnd("main ends\nused at the end\n");
    }
}

TEST_F(Exit, AStaticMayUseTheKernelFromItsConstructorToItsEnd)
{
    run("StaticUser");
    expectQuietEnd("used before main\nmain ends\nused behind main\n");
}

TEST_F(Exit, AHandlerMayUseTheKernelBehindItsCleanUp)
{
    for (const char* const use : {"", "first"})
    {
        run("LateHandler", use);
        expectQuietEnd("main ends\nused by a handler\n");
    }
}

TEST_F(Exit, WhatIsLeftInTheTablesMayUseThemWhenItEnds)
{
    run("LeavesEverything");
    // What the program itself owns last first, and then in the reverse order of first use.
    expectQuietEnd("main ends\n"
                   "the action of a stack\n"
                   "the action of the stack for all\n"
                   "the scheduled object\n"
                   "the handler\n"
                   "the quitter\n"
                   "the subscriber\n"
                   "the logger\n"
                   "the watcher\n"
                   "the saver\n"
                   "the pool creator\n"
                   "the object in the registry\n"
                   "the reader\n");
}

TEST_F(Exit, AProcessMayEndInTheMiddleOfAnyCall)
{
    for (const char* const place : {"update", "turn", "logger", "subscriber", "undo", "walk",
                                    "observer", "slots", "savers", "action", "unction", "queue"})
    {
        run("ExitsFrom", place);
        EXPECT_EQ(out, "leaving\n") << place;
        EXPECT_EQ(err, "") << place;
        EXPECT_EQ(status, 5) << place;
    }
}

// The kernel stays, and with it the library that has brought it, which it may have taken templates
// from.
TEST_F(Exit, ALibraryMayBringTheKernelLate)
{
    run("LateHost", LATE_USER " useIt");
    expectQuietEnd("used when loaded\nused\nunloaded\n"
                   "used\nleft to the end\nused when it leaves\n");
}

TEST_F(Exit, TheLateKernelMayBeUsedByAnEarlierStatic)
{
    run("LateHost", LATE_USER " useIt atTheEnd");
    expectQuietEnd("used when loaded\nused\nunloaded\n"
                   "used\nleft to the end\nused when it leaves\nused\n");
}

TEST_F(Exit, AProgramMayLoadTheKernelItselfAndLetItGo)
{
    run("LateHost", KERNEL " Zelm_locale_independent_strtod");
    expectQuietEnd("unloaded\nleft to the end\n");
}

class ExitThreads : public Exit
{
};

TEST_F(ExitThreads, MayEndWithHandlesOfTheirOwn)
{
    run("ThreadLocalUser");
    expectQuietEnd("main ends\n");
}

TEST_F(Exit, ObjectsOfModulesMayBeLeftAnywhere)
{
    run("LeavesModules", GOOD_MODULE " Good/first");
    expectQuietEnd("main ends\n");
}

TEST_F(Exit, CreatorsThatTheirModuleHasLeftBehindEndBeforeItsCode)
{
    run("LeavesModules", MODULE_THAT_LEAVES_A_CREATOR);
    expectQuietEnd("main ends\n");
}

#ifdef HAS_THREADS
TEST_F(ExitThreads, MayRunTasksOfWhichOthersWait)
{
    run("LeavesTasks", SHIPPED_MODULES "/threads.zelm");
    expectQuietEnd("main ends\n");
}
#endif

} // namespace
} // namespace QuorlTest
