#include <plugins/grid/MapError.h>
#include <plugins/picture/NewFile.h>
#include <tests/reliability/faults/FailingCalls.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/EmptyDomain.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>
#include <tests/support/WorkingDirectory.h>
#include <zelm/network/NetworkError.h>
#include <zelm/network/WholeFile.h>

#include <quorl/foundation/FileInfo.h>
#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/VCreatorCache.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>
#include <quorl/platform/Directory.h>
#include <quorl/platform/ModuleImage.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <quorl/registry/VInputCreatorBase.h>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>
#include <future>
#include <string>
#include <utility>

/// The system refuses a call now and then: files are whole or as they were, and what is said is
/// what the system said.
namespace QuorlTest
{
namespace
{

using Quorl::LoadVModule;
using Zelm::writeWholeFile;

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

    /// \return what was printed by a load that fails.
    static std::string failedLoad()
    {
        return outputOf([] { EXPECT_FALSE(LoadVModule("first.zelm")); });
    }

    static constexpr const char* kLoadFailed =
        "Loading Library [first.zelm] failed ;-(, see ZelmError.log for details.\n";

    const TemporaryFolder folder_;
    const WorkingDirectory workingDirectory_{folder_.path()};
};

/// The text of a large file, so that it takes several calls.
std::string longText(char letter)
{
    return std::string(1 << 20, letter) + "\n";
}

/// \return whether a process of its own, which is ended by a signal in that call, came to it.
bool isEndedIn(const char* call, const std::function<void()>& act, long number = 1)
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

// Files that are replaced in one step

class WholeFiles : public SystemFaults, public testing::WithParamInterface<const char*>
{
};

TEST_P(WholeFiles, StayAsTheyWereIfACallFails)
{
    writeBytes("file", "former");
    const FailingCall failing(GetParam(), 1, ENOSPC);

    std::string words;
    try
    {
        writeWholeFile("file", longText('a'));
    }
    catch (const Zelm::NetworkError& error)
    {
        words = error.what();
    }

    EXPECT_EQ(words, "file: this cannot be written: No space left on device");
    EXPECT_EQ(bytesOf("file"), "former");
    EXPECT_EQ(folder_.count(), 1U);
}
INSTANTIATE_TEST_SUITE_P(Calls, WholeFiles, testing::Values("write", "fchmod", "fsync", "rename"),
                         [](const auto& test) { return std::string(test.param); });

class WholePictures : public SystemFaults, public testing::WithParamInterface<const char*>
{
protected:
    static void replaceFile()
    {
        Maps::NewFile file("file");
        file.write(longText('a'));
        file.takeThePlaceOfTheTarget();
    }
};

TEST_P(WholePictures, StayAsTheyWereIfACallFailsOrEndsTheProcess)
{
    writeBytes("file", "former");
    std::string words;
    {
        const FailingCall failing(GetParam(), 1, ENOSPC);
        try
        {
            replaceFile();
        }
        catch (const Maps::MapError& error)
        {
            words = error.what();
        }
    }
    EXPECT_EQ(words, "'file': cannot be written: No space left on device");
    EXPECT_EQ(bytesOf("file"), "former");
    EXPECT_EQ(folder_.count(), 1U);

    EXPECT_TRUE(isEndedIn(GetParam(), &replaceFile));
    EXPECT_EQ(bytesOf("file"), "former");
}
INSTANTIATE_TEST_SUITE_P(Calls, WholePictures,
                         testing::Values("fwrite", "fchmod", "fclose", "rename"),
                         [](const auto& test) { return std::string(test.param); });

TEST_F(SystemFaults, AWriteThatIsInterruptedOrDoesHalfGoesOn)
{
    const std::string text = longText('a');
    {
        const FailingCall failing("write", 1, EINTR);
        writeWholeFile("file", text);
        EXPECT_TRUE(FailingCall::hasHappened());
    }
    EXPECT_EQ(bytesOf("file"), text);
    {
        const FailingCall failing("write", 1, 0, FailingCall::Halves);
        writeWholeFile("file", "short");
        EXPECT_TRUE(FailingCall::hasHappened());
    }
    EXPECT_EQ(bytesOf("file"), "short");
}

TEST_F(SystemFaults, AFileThatShrinksWhileItIsReadIsReadAsFarAsItGoes)
{
    const std::string text = longText('a');
    writeBytes("file", text);
    const FailingCall failing("read", 2, 0); // nothing more is there
    const std::string begin = Zelm::readWholeFile("file");
    EXPECT_TRUE(FailingCall::hasHappened());
    EXPECT_LT(begin.size(), text.size());
    EXPECT_TRUE(!begin.empty() && text.starts_with(begin));
}

TEST_F(SystemFaults, AFileThatCannotBeReadToItsEndIsRefused)
{
    writeBytes("file", longText('a'));
    const FailingCall failing("read", 2, EIO);
    try
    {
        Zelm::readWholeFile("file");
        ADD_FAILURE() << "half of a file is taken for all of it";
    }
    catch (const Zelm::NetworkError& error)
    {
        EXPECT_STREQ(error.what(), "file: Input/output error");
    }
}

TEST_F(SystemFaults, ASaveThatIsKilledLeavesTheFormerFile)
{
    for (const char* const call : {"write", "fchmod", "fsync", "rename"})
    {
        writeBytes("file", "former");
        EXPECT_TRUE(isEndedIn(call, [] { writeWholeFile("file", longText('a')); })) << call;
        EXPECT_EQ(bytesOf("file"), "former") << call;
    }
}

TEST_F(SystemFaults, ASaveThatIsKilledOnceItIsDoneLeavesTheNewFile)
{
    writeBytes("file", "former");
    EXPECT_TRUE(isEndedIn("close", [] { writeWholeFile("file", longText('b')); }));
    EXPECT_EQ(bytesOf("file"), longText('b'));
}

TEST_F(SystemFaults, ASaveWhoseFileCannotBeClosedIsDoneAllTheSame)
{
    writeBytes("file", "former");
    const FailingCall failing("close", 1, EIO); // behind fsync, which has told what could fail
    writeWholeFile("file", longText('b'));
    EXPECT_TRUE(FailingCall::hasHappened());
    EXPECT_EQ(bytesOf("file"), longText('b'));
    EXPECT_EQ(folder_.count(), 1U);
}

/// Does it where no file may grow beyond so many bytes. \return whether it did what is expected.
bool isDoneOnAFullDisk(::rlim_t most, const std::function<bool()>& act)
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

TEST_F(SystemFaults, AFullDiskLeavesTheFormerFile)
{
    writeBytes("file", "former");
    EXPECT_TRUE(isDoneOnAFullDisk(4096, [] {
        try
        {
            writeWholeFile("file", longText('a'));
        }
        catch (const Zelm::NetworkError& error)
        {
            return error.what() == std::string("file: this cannot be written: File too large");
        }
        return false;
    }));
    EXPECT_EQ(bytesOf("file"), "former");
    EXPECT_EQ(folder_.count(), 1U);
}

// The cache of creators

bool saveCache()
{
    bool answer = false;
    outputOf([&] { answer = Quorl::SaveVCreatorMapTypes("cache"); });
    return answer;
}

TEST_F(SystemFaults, ACacheThatCannotBeWrittenToItsEndIsLeftEmpty)
{
    for (const char* const call : {"fwrite", "fclose"})
    {
        const FailingCall failing(call, 1, ENOSPC);
        EXPECT_TRUE(saveCache()) << "the answer is that it could be opened";
        EXPECT_TRUE(FailingCall::hasHappened()) << call;
        EXPECT_EQ(bytesOf("cache"), "") << call;
    }
}

TEST_F(SystemFaults, AHalfWrittenCacheIsLeftEmptyWhicheverWriteIt)
{
    saveCache();
    const std::string whole = bytesOf("cache");
    for (long number = 1;; ++number)
    {
        const FailingCall failing("fwrite", number, ENOSPC, FailingCall::Halves);
        saveCache();
        if (!FailingCall::hasHappened()) break;
        // Half of one byte is that byte.
        const std::string bytes = bytesOf("cache");
        EXPECT_TRUE(bytes.empty() || bytes == whole) << number;
    }
    EXPECT_EQ(bytesOf("cache"), whole);
}

TEST_F(SystemFaults, AFullDiskLeavesTheCacheEmpty)
{
    EXPECT_TRUE(isDoneOnAFullDisk(16, [] { return saveCache() && bytesOf("cache").empty(); }));
}

/// Enters so many creators that a cache of them takes several calls of the system.
void enterManyCreators()
{
    auto& map = *Quorl::VCreators(typeid(Quorl::VInputCreatorBase));
    for (int number = 0; number < 1000; ++number)
    {
        const Quorl::RefPtr<Quorl::VCreatorBaseInfo> info(new Quorl::VCreatorBaseInfo);
        info->ModuleName = "./first.zelm";
        map.entered("Many/" + std::to_string(number)).second = info;
    }
}

TEST_F(SystemFaults, ACacheWhoseSaveIsKilledIsOneOfNothing)
{
    copyModule();
    enterManyCreators();
    const auto kill = [](const char* call, long number) {
        return isEndedIn(call, [] { Quorl::SaveVCreatorMapTypes("cache"); }, number);
    };
    bool isHalfWritten = false;
    for (long number = 1; kill("fwrite", number); number += 500)
    {
        isHalfWritten = isHalfWritten || !bytesOf("cache").empty();
        EXPECT_EQ(outputOf([] { Quorl::LoadVCreatorMapTypes("cache"); }), "TypeEntries: 0\n")
            << number;
        EXPECT_TRUE(Quorl::VModules::isLoadable("./first.zelm")) << "a scan loads it";
    }
    EXPECT_TRUE(isHalfWritten);
    for (const char* const call : {"fflush", "fclose"})
    {
        EXPECT_TRUE(kill(call, 1)) << call;
        EXPECT_EQ(outputOf([] { Quorl::LoadVCreatorMapTypes("cache"); }), "TypeEntries: 0\n")
            << call;
    }
    emptyDomain(typeid(Quorl::VInputCreatorBase));
}

TEST_F(SystemFaults, ACacheThatShrinksWhileItIsReadIsReadAsFarAsItGoes)
{
    copyModule();
    enterManyCreators();
    saveCache();
    emptyDomain(typeid(Quorl::VInputCreatorBase));
    const auto& creators = *Quorl::VCreators(typeid(Quorl::VInputCreatorBase));
    {
        const FailingCall failing("fread", 1, 0);
        EXPECT_EQ(outputOf([] { EXPECT_TRUE(Quorl::LoadVCreatorMapTypes("cache")); }),
                  "TypeEntries: 0\n");
        EXPECT_TRUE(FailingCall::hasHappened());
    }
    EXPECT_TRUE(creators.empty());
    {
        const FailingCall failing("fread", 1, 0, FailingCall::Halves);
        outputOf([] { EXPECT_TRUE(Quorl::LoadVCreatorMapTypes("cache")); });
        EXPECT_TRUE(FailingCall::hasHappened());
    }
    EXPECT_GT(creators.size(), 100U);
    EXPECT_LT(creators.size(), 1000U);
    emptyDomain(typeid(Quorl::VInputCreatorBase));
}

TEST_F(SystemFaults, ACacheMayBeWrittenToAPipe)
{
    enterManyCreators();
    saveCache();
    ASSERT_EQ(::mkfifo("pipe", 0600), 0);
    auto read = std::async(std::launch::async, [] { return bytesOf("pipe"); });
    outputOf([] { EXPECT_TRUE(Quorl::SaveVCreatorMapTypes("pipe")); });
    EXPECT_EQ(read.get(), bytesOf("cache"));
    emptyDomain(typeid(Quorl::VInputCreatorBase));
}

TEST_F(SystemFaults, ACacheThatCannotBeClosedAfterReadingIsReadAllTheSame)
{
    saveCache();
    const FailingCall failing("fclose", 1, EIO);
    outputOf([] { EXPECT_TRUE(Quorl::LoadVCreatorMapTypes("cache")); });
    EXPECT_TRUE(FailingCall::hasHappened());
}

// Modules

TEST_F(SystemFaults, AModuleThatTheLoaderRefusesWithoutAWordIsRefusedInFixedWords)
{
    copyModule();
    const FailingCall failing("dlopen", 1, ENOMEM);
    EXPECT_EQ(failedLoad(), kLoadFailed);
    EXPECT_EQ(bytesOf("ZelmError.log"), "FormatMessage() call failed.\n");
}

TEST_F(SystemFaults, AModuleThatShrinksWhileItIsReadIsRefused)
{
    copyModule();
    for (const long number : {1, 2})
    {
        std::filesystem::remove("ZelmError.log");
        const FailingCall failing("pread", number, 0); // nothing more is there
        EXPECT_EQ(failedLoad(), kLoadFailed);
        EXPECT_EQ(bytesOf("ZelmError.log"),
                  "Error while loading Zelm plugin\n first.zelm \n\nThe problem is that \"Exec "
                  "format error\"\n\n")
            << number;
    }
}

TEST_F(SystemFaults, NotesThatCannotBeReadAreNone)
{
    copyModule();
    const FailingCall failing("pread", 3, EIO);
    EXPECT_EQ(failedLoad(), kLoadFailed);
    EXPECT_EQ(bytesOf("ZelmError.log"), "No Zelm version resource information available.\n\n");
}

TEST_F(SystemFaults, ReadsThatAreInterruptedOrDoHalfGoOn)
{
    copyModule();
    for (const auto manner : {FailingCall::Fails, FailingCall::Halves})
        for (long number = 1; number < 5; ++number)
        {
            const FailingCall failing("pread", number, EINTR, manner);
            const Tolmen::Platform::ModuleImage image("first.zelm");
            EXPECT_EQ(image.text(1, 100), "ZELM_API_2017_AUG_07") << number;
        }
}

/// The earlier image, which would be found in its place, has run its initialisers already.
TEST_F(SystemFaults, AModuleThatStaysMappedIsNotLoadedAgainIfItCannotBeCopied)
{
    std::filesystem::copy_file(STAYING_MODULE, "harm.zelm");
    Quorl::LeaveItems remover;
    outputOf([] { EXPECT_TRUE(LoadVModule("harm.zelm")); });
    for (const auto& [call, error] :
         {std::pair("sendfile", ENOSPC), {"sendfile", 0}, {"memfd_create", EMFILE}})
    {
        std::filesystem::remove("ZelmError.log");
        EXPECT_TRUE(Quorl::UnloadVModule("harm.zelm", remover));
        outputOf([&] {
            const FailingCall failing(call, 1, error);
            EXPECT_FALSE(LoadVModule("harm.zelm"));
            EXPECT_TRUE(FailingCall::hasHappened()) << call;
        });
        const std::string words = std::strerror(error == 0 ? ENOEXEC : error);
        EXPECT_EQ(bytesOf("ZelmError.log"),
                  "Error while loading Zelm plugin\n harm.zelm \n\nThe problem is that \"" + words +
                      "\"\n\n");
        EXPECT_FALSE(Quorl::VModules::find("harm.zelm"));
        outputOf([] { EXPECT_TRUE(LoadVModule("harm.zelm")); }); // once there is room again
    }
    EXPECT_TRUE(Quorl::UnloadVModule("harm.zelm", remover));
}

TEST_F(SystemFaults, AModuleWhoseFileCannotBeAskedIsLoadedAndNeverNewer)
{
    copyModule();
    {
        const FailingCall failing("stat", 1, EACCES);
        EXPECT_TRUE(LoadVModule("first.zelm"));
        EXPECT_TRUE(FailingCall::hasHappened());
    }
    const FailingCall failing("stat", 1, EACCES);
    EXPECT_FALSE(Quorl::VModules::find("first.zelm")->haveNewerPlugin());
}

TEST_F(SystemFaults, AFolderThatCannotBeOpenedIsSaidToBe)
{
    copyModule();
    const FailingCall failing("opendir", 1, EMFILE);
    EXPECT_EQ(outputOf([] { EXPECT_EQ(Quorl::openModules(".", nullptr, false, {}), 0); }),
              "\n*******\nERROR in searching modules in .\n*******\n\n");
}

TEST_F(SystemFaults, AFolderThatCannotBeReadToItsEndGivesWhatThereWas)
{
    copyModule();
    writeBytes("second.zelm", "");
    long entries = 0;
    for (long number = 1; number < 5; ++number) // with those of the folder and its parent
    {
        const FailingCall failing("readdir", number, EIO);
        const auto names = Tolmen::Platform::namesIn(".", ".zelm");
        EXPECT_LE(static_cast<long>(names.size()), number - 1);
        entries += static_cast<long>(names.size());
    }
    EXPECT_GT(entries, 0);
}

TEST_F(SystemFaults, AFileThatCannotBeRenamedKeepsItsName)
{
    writeBytes("from", "bytes");
    {
        const FailingCall failing("renameat2", 1, EACCES);
        EXPECT_FALSE(Tolmen::Platform::renameFile("from", "to"));
        EXPECT_TRUE(FailingCall::hasHappened());
    }
    EXPECT_EQ(bytesOf("from"), "bytes");
    const FailingCall failing("renameat2", 1, EINVAL); // as some file systems say
    EXPECT_TRUE(Tolmen::Platform::renameFile("from", "to"));
    EXPECT_TRUE(FailingCall::hasHappened());
    EXPECT_EQ(bytesOf("to"), "bytes");
}

TEST_F(SystemFaults, OutputThatCannotBeFlushedIsLost)
{
    const FailingCall failing("fflush", 1, EPIPE);
    EXPECT_EQ(Quorl::openModules("nowhere", nullptr, false, {}), 0);
    EXPECT_TRUE(FailingCall::hasHappened());
}

} // namespace
} // namespace QuorlTest
