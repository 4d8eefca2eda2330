#include <plugins/grid/MapError.h>
#include <plugins/picture/NewFile.h>
#include <tests/reliability/faults/SystemFaults.h>
#include <zelm/network/NetworkError.h>
#include <zelm/network/WholeFile.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>

/// Files that are replaced in one step, and files that are read.
namespace QuorlTest
{
namespace
{

using Zelm::writeWholeFile;

/// The text of a large file, so that it takes several calls.
std::string longText(char letter)
{
    return std::string(1 << 20, letter) + "\n";
}

class FileFaults : public SystemFaults
{
};

class WholeFiles : public FileFaults, public testing::WithParamInterface<const char*>
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
INSTANTIATE_TEST_SUITE_P(Calls, WholeFiles,
                         testing::Values("stat", "mkdtemp", "write", "fchmod", "fsync", "rename"),
                         [](const auto& test) { return std::string(test.param); });

class WholePictures : public FileFaults, public testing::WithParamInterface<const char*>
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
                         testing::Values("stat", "mkdtemp", "fwrite", "fchmod", "fclose", "rename"),
                         [](const auto& test) { return std::string(test.param); });

TEST_F(FileFaults, AWriteThatIsInterruptedOrDoesHalfGoesOn)
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

TEST_F(FileFaults, AFileThatShrinksWhileItIsReadIsReadAsFarAsItGoes)
{
    const std::string text = longText('a');
    writeBytes("file", text);
    const FailingCall failing("read", 2, 0); // nothing more is there
    const std::string begin = Zelm::readWholeFile("file");
    EXPECT_TRUE(FailingCall::hasHappened());
    EXPECT_LT(begin.size(), text.size());
    EXPECT_TRUE(!begin.empty() && text.starts_with(begin));
}

TEST_F(FileFaults, AFileThatIsReplacedWhileItIsReadIsReadAsItWas)
{
    const std::string text = longText('a');
    writeBytes("file", text);
    writeBytes("next", "next");
    const SignalHandler replace(SIGINT, [](int) { std::rename("next", "file"); });
    const FailingCall signal("read", 2, 0, FailingCall::Interrupts);
    EXPECT_EQ(Zelm::readWholeFile("file"), text);
    EXPECT_EQ(bytesOf("file"), "next");
}

TEST_F(FileFaults, AFileThatCannotBeReadToItsEndIsRefused)
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

TEST_F(FileFaults, ASaveGoesOnBehindASignalThatIsHandled)
{
    for (const char* const call : {"stat", "write", "fchmod", "fsync", "rename", "close"})
    {
        static int signals = 0;
        signals = 0;
        writeBytes("file", "former");
        const SignalHandler count(SIGINT, [](int) { ++signals; });
        const FailingCall signal(call, 1, 0, FailingCall::Interrupts);
        writeWholeFile("file", longText('a'));
        EXPECT_EQ(signals, 1) << call;
        EXPECT_EQ(bytesOf("file"), longText('a')) << call;
        EXPECT_EQ(folder_.count(), 1U) << call;
    }
}

TEST_F(FileFaults, ASaveThatIsKilledLeavesTheFormerFile)
{
    for (const char* const call : {"write", "fchmod", "fsync", "rename"})
    {
        writeBytes("file", "former");
        EXPECT_TRUE(isEndedIn(call, [] { writeWholeFile("file", longText('a')); })) << call;
        EXPECT_EQ(bytesOf("file"), "former") << call;
    }
}

TEST_F(FileFaults, ASaveThatIsKilledOnceItIsDoneLeavesTheNewFile)
{
    writeBytes("file", "former");
    EXPECT_TRUE(isEndedIn("close", [] { writeWholeFile("file", longText('b')); }));
    EXPECT_EQ(bytesOf("file"), longText('b'));
}

TEST_F(FileFaults, ASaveWhoseFileCannotBeClosedIsDoneAllTheSame)
{
    writeBytes("file", "former");
    const FailingCall failing("close", 1, EIO); // behind fsync, which has told what could fail
    writeWholeFile("file", longText('b'));
    EXPECT_TRUE(FailingCall::hasHappened());
    EXPECT_EQ(bytesOf("file"), longText('b'));
    EXPECT_EQ(folder_.count(), 1U);
}

TEST_F(FileFaults, AFullDiskLeavesTheFormerFile)
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

} // namespace
} // namespace QuorlTest
