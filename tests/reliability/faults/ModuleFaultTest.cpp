#include <tests/reliability/faults/SystemFaults.h>
#include <tests/support/CapturedOutput.h>

#include <quorl/platform/Directory.h>
#include <quorl/platform/ModuleImage.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

/// Modules, and the folders in which they are.
namespace QuorlTest
{
namespace
{

using Quorl::LoadVModule;

class ModuleFaults : public SystemFaults
{
protected:
    /// Loads the module while a call fails. \param log what is written of that.
    static void expectRefusal(const char* call, long number, int error, const std::string& log)
    {
        std::filesystem::remove("ZelmError.log");
        const FailingCall failing(call, number, error);
        EXPECT_EQ(outputOf([] { EXPECT_FALSE(LoadVModule("first.zelm")); }),
                  "Loading Library [first.zelm] failed ;-(, see ZelmError.log for details.\n");
        EXPECT_EQ(bytesOf("ZelmError.log"), log) << call << ' ' << number;
    }
};

TEST_F(ModuleFaults, AModuleThatTheLoaderRefusesWithoutAWordIsRefusedInFixedWords)
{
    copyModule();
    expectRefusal("dlopen", 1, ENOMEM, "FormatMessage() call failed.\n");
}

TEST_F(ModuleFaults, AModuleThatShrinksWhileItIsReadIsRefused)
{
    copyModule();
    for (const long number : {1, 2})
        expectRefusal("pread", number, 0, // nothing more is there
                      "Error while loading Zelm plugin\n first.zelm \n\nThe problem is that \"Exec "
                      "format error\"\n\n");
}

TEST_F(ModuleFaults, NotesThatCannotBeReadAreNone)
{
    copyModule();
    expectRefusal("pread", 3, EIO, "No Zelm version resource information available.\n\n");
}

TEST_F(ModuleFaults, ReadsThatAreInterruptedOrDoHalfGoOn)
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
TEST_F(ModuleFaults, AModuleThatStaysMappedIsNotLoadedAgainIfItCannotBeCopied)
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

TEST_F(ModuleFaults, AModuleWhoseFileCannotBeAskedIsLoadedAndNeverNewer)
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

TEST_F(ModuleFaults, AFolderThatCannotBeOpenedIsSaidToBe)
{
    copyModule();
    const FailingCall failing("opendir", 1, EMFILE);
    EXPECT_EQ(outputOf([] { EXPECT_EQ(Quorl::openModules(".", nullptr, false, {}), 0); }),
              "\n*******\nERROR in searching modules in .\n*******\n\n");
}

TEST_F(ModuleFaults, AFolderThatCannotBeReadToItsEndGivesWhatThereWas)
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

TEST_F(ModuleFaults, AFileThatCannotBeRenamedKeepsItsName)
{
    writeBytes("from", "bytes");
    {
        const FailingCall failing("renameat2", 1, EACCES);
        EXPECT_FALSE(Tolmen::Platform::renameFile("from", "to"));
        EXPECT_TRUE(FailingCall::hasHappened());
    }
    EXPECT_EQ(bytesOf("from"), "bytes");
}

TEST_F(ModuleFaults, AFileIsRenamedWhereTheFileSystemCannotRefuseToReplaceOne)
{
    const auto rename = [](const std::string& from, const std::string& to) {
        const FailingCall failing("renameat2", 1, EINVAL); // as such file systems say
        const bool isRenamed = Tolmen::Platform::renameFile(from, to);
        EXPECT_TRUE(FailingCall::hasHappened());
        return isRenamed;
    };
    writeBytes("a", "first");
    writeBytes("c", "there");
    EXPECT_TRUE(rename("a", "b"));
    EXPECT_FALSE(rename("b", "c"));
    EXPECT_FALSE(rename("a", "d"));
    EXPECT_EQ(folder_.count(), 2U);
    EXPECT_EQ(bytesOf("b"), "first");
    EXPECT_EQ(bytesOf("c"), "there");
}

TEST_F(ModuleFaults, OutputThatCannotBeFlushedIsLost)
{
    const FailingCall failing("fflush", 1, EPIPE);
    EXPECT_EQ(Quorl::openModules("nowhere", nullptr, false, {}), 0);
    EXPECT_TRUE(FailingCall::hasHappened());
}

} // namespace
} // namespace QuorlTest
