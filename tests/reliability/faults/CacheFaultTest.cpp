#include <tests/reliability/faults/SystemFaults.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/EmptyDomain.h>

#include <quorl/modules/VCreatorCache.h>
#include <quorl/registry/VInputCreatorBase.h>

#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <future>
#include <string>

/// The cache of creators, which is written in its place.
namespace QuorlTest
{
namespace
{

class CacheFaults : public SystemFaults
{
};

bool saveCache()
{
    bool answer = false;
    outputOf([&] { answer = Quorl::SaveVCreatorMapTypes("cache"); });
    return answer;
}

TEST_F(CacheFaults, ACacheThatCannotBeWrittenToItsEndIsLeftEmpty)
{
    for (const char* const call : {"fwrite", "fflush", "fclose"})
    {
        outputOf([&] {
            const FailingCall failing(call, 1, ENOSPC);
            EXPECT_TRUE(Quorl::SaveVCreatorMapTypes("cache")) << "it could be opened";
            EXPECT_TRUE(FailingCall::hasHappened()) << call;
        });
        EXPECT_EQ(bytesOf("cache"), "") << call;
    }
}

TEST_F(CacheFaults, AHalfWrittenCacheIsLeftEmptyWhicheverWriteIt)
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

TEST_F(CacheFaults, AFullDiskLeavesTheCacheEmpty)
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

TEST_F(CacheFaults, ACacheWhoseSaveIsKilledIsOneOfNothing)
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

TEST_F(CacheFaults, ACacheThatShrinksWhileItIsReadIsReadAsFarAsItGoes)
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

TEST_F(CacheFaults, ACacheThatIsReplacedWhileItIsReadIsReadAsItWas)
{
    copyModule();
    enterManyCreators();
    saveCache();
    emptyDomain(typeid(Quorl::VInputCreatorBase));
    writeBytes("next", "");
    {
        const SignalHandler replace(SIGINT, [](int) { std::rename("next", "cache"); });
        const FailingCall signal("fread", 1, 0, FailingCall::Interrupts);
        outputOf([] { EXPECT_TRUE(Quorl::LoadVCreatorMapTypes("cache")); });
    }
    EXPECT_EQ(bytesOf("cache"), "");
    EXPECT_EQ(Quorl::VCreators(typeid(Quorl::VInputCreatorBase))->size(), 1000U);
    emptyDomain(typeid(Quorl::VInputCreatorBase));
}

TEST_F(CacheFaults, ACacheMayBeWrittenToAPipe)
{
    enterManyCreators();
    saveCache();
    ASSERT_EQ(::mkfifo("pipe", 0600), 0);
    auto read = std::async(std::launch::async, [] { return bytesOf("pipe"); });
    outputOf([] { EXPECT_TRUE(Quorl::SaveVCreatorMapTypes("pipe")); });
    EXPECT_EQ(read.get(), bytesOf("cache"));
    emptyDomain(typeid(Quorl::VInputCreatorBase));
}

TEST_F(CacheFaults, ACacheThatCannotBeClosedAfterReadingIsReadAllTheSame)
{
    saveCache();
    const FailingCall failing("fclose", 1, EIO);
    outputOf([] { EXPECT_TRUE(Quorl::LoadVCreatorMapTypes("cache")); });
    EXPECT_TRUE(FailingCall::hasHappened());
}

} // namespace
} // namespace QuorlTest
