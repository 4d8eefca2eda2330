#include <quorl/modules/DownloadHandler.h>
#include <quorl/modules/VLoader.h>
#include <quorl/modules/VLoaderInfo.h>
#include <quorl/services/VActionNotifier.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/FileBytes.h>
#include <tests/support/Node.h>
#include <tests/support/TemporaryFolder.h>
#include <tests/support/TestCreator.h>
#include <tests/support/WorkingDirectory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace Quorl
{
namespace
{

using QuorlTest::errorOutputOf;
using QuorlTest::Registered;
using QuorlTest::TestCreator;
using testing::ElementsAre;
using testing::IsEmpty;

/// Takes files of one suffix, and notes what it is asked.
class TestLoader final : public VLoader
{
public:
    TestLoader(const string& loaderName, int givenPriority, const string& takenSuffix)
        : VLoader(loaderName, givenPriority), suffix(takenSuffix)
    {
    }

    LoadSuccess check(const string& file) override
    {
        checked.push_back(file);
        if (file.ends_with(suffix)) return {};
        return {"ignored", "ignored", "not mine"};
    }

    RefPtr<VManagedObject> load(LoadSuccess& success, const string& file,
                                const string& objectName) override
    {
        loaded.push_back(file + "|" + objectName);
        success.reason = failure;
        return result;
    }

    string suffix;
    string failure;
    RefPtr<VManagedObject> result;
    std::vector<string> checked;
    std::vector<string> loaded;
};

/// Hears what is told on the action channel.
struct Channel final : VActionNotifier
{
    using VActionNotifier::warn;
    void status(const string& text) override { log.push_back("status " + text); }
    void warn(const WarnInfo& info) override
    {
        log.push_back("warn " + info.origin + "|" + info.text + "|" + info.details + "|" +
                      std::to_string(info.severity));
    }
    void createVObject(const RefPtr<VObject>& object, const Tolmen::Intercube& info,
                       const WeakPtr<VCreatorBase>& creator) override
    {
        const RefPtr<VLoaderInfo> origin = info.findInterface(typeid(VLoaderInfo));
        log.push_back("made " + object->getName() + " by " + creator->getName() + " from " +
                      (origin ? origin->url + " with " + origin->loader->getName() : "nowhere"));
    }
    std::vector<string> log;
};

/// Notes what it is asked, and does what a test tells it.
class TestHandler final : public DownloadHandler
{
public:
    bool download(const string& url, long long size, const string& file,
                  long long localsize) override
    {
        calls.push_back(url + " " + std::to_string(size) + " " + file + " " +
                        std::to_string(localsize));
        return whenAsked ? whenAsked() : true;
    }
    std::vector<string> calls;
    std::function<bool()> whenAsked;
};

struct Loading : testing::Test
{
    Loading()
    {
        channel->activate();
        creator->whenAsked = [this](const string& name, const Tolmen::Intercube&) {
            return RefPtr<VObject>(network.node(name));
        };
    }
    ~Loading() override { DownloadHandler::setDownloadHandler({}); }

    RefPtr<VObject> load(const string& url, const string& name = "")
    {
        success = {};
        return VLoader::Load(success, url, name);
    }

    string report() const { return success.loader + "|" + success.file + "|" + success.reason; }

    static void write(const string& file, const string& bytes)
    {
        QuorlTest::writeBytes(file, bytes);
    }

    const QuorlTest::TemporaryFolder folder;
    const QuorlTest::WorkingDirectory workingDirectory{folder.path()};
    QuorlTest::Network network;
    Registered<TestLoader> loader{new TestLoader("loader", 0, ".x")};
    Registered<TestCreator> creator{new TestCreator("Loaded/Data")};
    RefPtr<Channel> channel{new Channel};
    VLoader::LoadSuccess success;
};

using VLoaderLoad = Loading;
using VLoaderReference = Loading;
using VLoaderDownload = Loading;

TEST(VLoader, IsInItsDomainOnlyIfItIsNamed)
{
    class Unnamed final : public VLoader
    {
        LoadSuccess check(const string&) override { return {}; }
        RefPtr<VManagedObject> load(LoadSuccess&, const string&, const string&) override
        {
            return {};
        }
    };
    const RefPtr<VLoader> unnamed(new Unnamed);
    EXPECT_EQ(unnamed->domainMap, nullptr);
    EXPECT_TRUE(unnamed->recent.empty());
    const Registered named(new TestLoader("named loader", 4, ".y"));
    EXPECT_EQ(VManagedObject::find(typeid(VLoader), "named loader"), named.handle());
    EXPECT_EQ(named->priority, 4);
}

TEST_F(VLoaderLoad, NeedsAReference)
{
    EXPECT_FALSE(load("").referer);
    EXPECT_EQ(report(), "||No file name or URL given.");
    EXPECT_THAT(channel->log, IsEmpty());
    EXPECT_THAT(loader->checked, IsEmpty());
}

TEST_F(VLoaderLoad, MakesAnObjectOfWhatIsLoaded)
{
    loader->result = creator.handle();
    const RefPtr<VObject> object = load("data.x", "mine");

    ASSERT_TRUE(object);
    EXPECT_EQ(object->getName(), "mine");
    EXPECT_EQ(report(), "||");
    EXPECT_THAT(loader->loaded, ElementsAre("data.x|mine"));
    EXPECT_THAT(loader->recent, ElementsAre("data.x"));
    EXPECT_THAT(channel->log, ElementsAre("made mine by Loaded/Data from data.x with loader"));
    const RefPtr<VLoaderInfo> info = creator->findInterface(typeid(VLoaderInfo));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->url, "data.x");
    EXPECT_EQ(info->loader, loader.handle());
}

TEST_F(VLoaderLoad, NamesAnObjectAfterTheCreator)
{
    loader->result = creator.handle();
    EXPECT_EQ(load("data.x")->getName(), "Loaded/Data");
    EXPECT_THAT(loader->loaded, ElementsAre("data.x|"));
}

TEST_F(VLoaderLoad, TellsThatNobodyTakesTheFile)
{
    EXPECT_FALSE(load("data.unknown").referer);
    EXPECT_EQ(report(), "|data.unknown|Unsupported file extension or format.");
    EXPECT_THAT(channel->log, ElementsAre("status Could not load data.unknown !"));
    EXPECT_THAT(loader->loaded, IsEmpty());
}

TEST_F(VLoaderLoad, AsksByPriorityUntilOneTakesTheFile)
{
    const Registered first(new TestLoader("first", -5, ".y"));
    const Registered last(new TestLoader("last", 5, ".x"));
    loader->result = creator.handle();
    load("data.x");

    EXPECT_THAT(first->checked, ElementsAre("data.x"));
    EXPECT_THAT(first->loaded, IsEmpty());
    EXPECT_THAT(loader->loaded, ElementsAre("data.x|"));
    EXPECT_THAT(last->checked, IsEmpty());
}

TEST_F(VLoaderLoad, TheFailureOfTheOneThatTookItIsFinal)
{
    const Registered last(new TestLoader("last", 5, ".x"));
    loader->failure = "broken";
    loader->result = creator.handle();
    EXPECT_FALSE(load("data.x").referer);

    EXPECT_EQ(report(), "loader|data.x|broken");
    EXPECT_THAT(channel->log, ElementsAre("status Could not load data.x !"));
    EXPECT_THAT(last->checked, IsEmpty());
    EXPECT_THAT(loader->recent, IsEmpty());
    EXPECT_FALSE(creator->findInterface(typeid(VLoaderInfo)));
}

TEST_F(VLoaderLoad, NothingWithoutAReasonIsNoFailure)
{
    EXPECT_FALSE(load("data.x").referer);
    EXPECT_EQ(report(), "||");
    EXPECT_THAT(channel->log, IsEmpty());
    EXPECT_THAT(loader->recent, IsEmpty());
}

TEST_F(VLoaderLoad, MakesNoObjectOfWhatIsNoCreator)
{
    loader->result = network.node("no creator");
    EXPECT_FALSE(load("data.x").referer);
    EXPECT_EQ(report(), "||");
    EXPECT_THAT(loader->recent, ElementsAre("data.x")) << "it was loaded all the same";
    EXPECT_THAT(channel->log, IsEmpty());
}

TEST_F(VLoaderLoad, RemembersAlsoIfTheCreatorMakesNothing)
{
    creator->whenAsked = {};
    loader->result = creator.handle();
    EXPECT_FALSE(load("data.x").referer);
    EXPECT_EQ(report(), "||");
    EXPECT_THAT(loader->recent, ElementsAre("data.x"));
    EXPECT_THAT(channel->log, IsEmpty());
}

TEST_F(VLoaderLoad, RemembersTheLast256)
{
    creator->whenAsked = {};
    loader->result = creator.handle();
    for (int number = 0; number < 257; ++number) load(std::to_string(number) + ".x");

    EXPECT_EQ(loader->recent.size(), 256U);
    EXPECT_EQ(loader->recent.front(), "256.x");
    EXPECT_EQ(loader->recent.back(), "1.x");
}

TEST_F(VLoaderLoad, TakesAReferenceFromItsOwnRecord)
{
    creator->whenAsked = {};
    loader->result = creator.handle();
    for (int number = 0; number < 256; ++number) load(std::to_string(number) + ".x");
    load(loader->recent.back());
    EXPECT_EQ(loader->recent.front(), "0.x");
    EXPECT_EQ(loader->recent.back(), "1.x");
    EXPECT_EQ(loader->recent.size(), 256U);
}

TEST_F(VLoaderLoad, TakesAReferenceFromTheLastReport)
{
    load("data.unknown");
    VLoader::Load(success, success.file, success.file);
    EXPECT_EQ(report(), "|data.unknown|Unsupported file extension or format.");
    loader->failure = "broken";
    load("data.x");
    VLoader::Load(success, success.file, "");
    EXPECT_EQ(report(), "loader|data.x|broken");
}

TEST_F(VLoaderLoad, WarnsOfAFailureIfItIsAskedTo)
{
    EXPECT_FALSE(VLoader::LoadWithWarning("somebody", "data.unknown", "").referer);
    EXPECT_THAT(channel->log,
                ElementsAre("status Could not load data.unknown !",
                            "warn somebody|Cannot load file data.unknown|Unsupported file "
                            "extension or format.|0"));
    channel->log.clear();
    VLoader::LoadWithWarning("somebody", "", "");
    EXPECT_THAT(channel->log,
                ElementsAre("warn somebody|Cannot load file |No file name or URL given.|0"));
    channel->log.clear();
    loader->result = creator.handle();
    EXPECT_TRUE(VLoader::LoadWithWarning("somebody", "data.x", ""));
    EXPECT_EQ(channel->log.size(), 1U);
}

TEST_F(VLoaderLoad, SurvivesALoaderThatLeavesMeanwhile)
{
    class Leaving final : public VLoader
    {
    public:
        Leaving() : VLoader("leaving", -9) {}
        LoadSuccess check(const string&) override
        {
            VManagedObject::remove();
            return {};
        }
        RefPtr<VManagedObject> load(LoadSuccess&, const string&, const string&) override
        {
            return {};
        }
    };
    new Leaving;
    EXPECT_FALSE(load("data.x").referer);
    EXPECT_EQ(report(), "||");
}

// References

/// What the loaders are asked for.
struct Resolved
{
    string reference;
    string file;
};

TEST_F(VLoaderReference, IsAPlainFileNameUnlessItHasASizeAndALocation)
{
    const RefPtr<TestHandler> handler(new TestHandler);
    DownloadHandler::setDownloadHandler(handler);
    for (const char* plain : {"name", "12345", "10x", "@http://h/n", "-1@http://h/n", " 1@x"})
    {
        loader->checked.clear();
        load(plain);
        EXPECT_THAT(loader->checked, ElementsAre(plain));
    }
    EXPECT_THAT(handler->calls, IsEmpty());
}

TEST_F(VLoaderReference, NamesTheLocalFile)
{
    const RefPtr<TestHandler> handler(new TestHandler);
    DownloadHandler::setDownloadHandler(handler);
    for (const Resolved& each :
         {Resolved{"10@http://h/dir/n.x", "n.x"}, Resolved{"10@l.x@http://h/n", "l.x"},
          Resolved{"10@l@http://a@http://b/c", "l"}, Resolved{"10@", "10@"},
          Resolved{"10@ftp://h/n", "10@ftp://h/n"}})
    {
        loader->checked.clear();
        load(each.reference);
        EXPECT_THAT(loader->checked, ElementsAre(each.file)) << each.reference;
    }
    EXPECT_THAT(handler->calls, ElementsAre("http://h/dir/n.x 10 n.x 0", "http://h/n 10 l.x 0",
                                            "http://a@http://b/c 10 l 0", " 10 10@ 0",
                                            "ftp://h/n 10 10@ftp://h/n 0"));
}

TEST_F(VLoaderReference, ThatEndsInASlashNamesNoFile)
{
    const RefPtr<TestHandler> handler(new TestHandler);
    DownloadHandler::setDownloadHandler(handler);
    loader->suffix = "";
    loader->result = creator.handle();
    EXPECT_EQ(errorOutputOf([&] { load("10@http://h/"); }), "");

    EXPECT_THAT(loader->checked, ElementsAre(""));
    EXPECT_THAT(handler->calls, IsEmpty());
    EXPECT_THAT(loader->recent, ElementsAre("10@http://h/"));
}

TEST_F(VLoaderReference, WithASizeBeyond64BitsIsOutOfRange)
{
    try
    {
        load("99999999999999999999@http://h/n");
        FAIL();
    }
    catch (const std::out_of_range& error)
    {
        EXPECT_STREQ(error.what(), "stoll");
    }
}

TEST_F(VLoaderDownload, IsNotNeededForAFileOfTheSize)
{
    const RefPtr<TestHandler> handler(new TestHandler);
    DownloadHandler::setDownloadHandler(handler);
    write("n.x", "0123456789");
    loader->result = creator.handle();
    const string printed = errorOutputOf([&] { EXPECT_TRUE(load("10@http://h/n.x")); });

    EXPECT_TRUE(printed.starts_with("file seek: ")) << printed;
    EXPECT_EQ(std::ranges::count(printed, '\n'), 1);
    EXPECT_THAT(handler->calls, IsEmpty());
    EXPECT_THAT(loader->loaded, ElementsAre("n.x|"));
    EXPECT_THAT(loader->recent, ElementsAre("10@http://h/n.x"));
}

TEST_F(VLoaderDownload, GoesOnWithAnySizeWithoutAHandler)
{
    write("n.x", "short");
    loader->result = creator.handle();
    errorOutputOf([&] { EXPECT_TRUE(load("10@http://h/n.x")); });
    EXPECT_TRUE(load("10@http://h/absent.x"));
}

TEST_F(VLoaderDownload, GoesOnWithAHandlerThatHasEnded)
{
    auto* const handler = new TestHandler;
    DownloadHandler::setDownloadHandler(RefPtr<DownloadHandler>(handler));
    delete handler; // though it is held
    write("n.x", "short");
    loader->result = creator.handle();
    errorOutputOf([&] { EXPECT_TRUE(load("10@http://h/n.x")); });
}

TEST_F(VLoaderDownload, GoesOnWhenTheHandlerSaysSo)
{
    const RefPtr<TestHandler> handler(new TestHandler);
    DownloadHandler::setDownloadHandler(handler);
    write("n.x", "short");
    loader->result = creator.handle();
    errorOutputOf([&] { EXPECT_TRUE(load("10@http://h/n.x")); });
    EXPECT_THAT(handler->calls, ElementsAre("http://h/n.x 10 n.x 5"));
}

TEST_F(VLoaderDownload, WaitsForAFileThatIsOnItsWay)
{
    const RefPtr<TestHandler> handler(new TestHandler);
    DownloadHandler::setDownloadHandler(handler);
    handler->whenAsked = [&] {
        write("n.x", string(handler->calls.size() * 5, 'x'));
        return false;
    };
    loader->result = creator.handle();
    const string printed = errorOutputOf([&] { EXPECT_TRUE(load("10@http://h/n.x")); });

    EXPECT_THAT(handler->calls, ElementsAre("http://h/n.x 10 n.x 0", "http://h/n.x 10 n.x 5"));
    EXPECT_EQ(std::ranges::count(printed, '\n'), 2) << "a line for each look at the file";
}

TEST(DownloadHandlers, AreReplacedAndRemoved)
{
    const RefPtr<DownloadHandler> one(new TestHandler);
    const RefPtr<DownloadHandler> two(new TestHandler);
    EXPECT_FALSE(DownloadHandler::getDownloadHandler().referer);
    DownloadHandler::setDownloadHandler(one);
    EXPECT_EQ(DownloadHandler::getDownloadHandler(), one);
    DownloadHandler::setDownloadHandler(two);
    EXPECT_EQ(DownloadHandler::getDownloadHandler(), two);
    EXPECT_EQ(one.referer->strong, 1);
    DownloadHandler::setDownloadHandler({});
    EXPECT_FALSE(DownloadHandler::getDownloadHandler().referer);
}

} // namespace
} // namespace Quorl
