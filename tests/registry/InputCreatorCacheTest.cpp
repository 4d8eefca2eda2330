#include <quorl/foundation/Typename.h>
#include <quorl/registry/InputCreatorCache.h>
#include <quorl/registry/VInputCreator.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/InputCacheBytes.h>
#include <tests/support/TestCreator.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace Quorl
{
namespace
{

using QuorlTest::InputCacheBytes;
using QuorlTest::outputOf;
using QuorlTest::Registered;
using testing::ElementsAre;

/// A file that is gone at the end.
class TemporaryFile
{
public:
    explicit TemporaryFile(const string& bytes)
        : path_(
              std::filesystem::temp_directory_path() /
              ("quorl-input-cache-" + std::to_string(::getpid()) + "-" + std::to_string(++count_)))
    {
        std::ofstream(path_, std::ios::binary) << bytes;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { std::filesystem::remove(path_); }

    string path() const { return path_.string(); }

private:
    static inline int count_ = 0;
    const std::filesystem::path path_;
};

/// \return what the reader answers. \param printed receives what it prints.
bool load(const string& bytes, string* printed = nullptr)
{
    const TemporaryFile file(bytes);
    bool answer = false;
    const string output = outputOf([&] { answer = LoadInputCreatorCache(file.path()); });
    if (printed) *printed = output;
    return answer;
}

struct Visit final : VInputCreatorIterator
{
    bool apply(const WeakPtr<VInputCreatorBase>& creator) override
    {
        names.push_back(creator->getName());
        return goesOn;
    }
    std::vector<string> names;
    bool goesOn = true;
};

Registered<VInputCreatorBase> makeCreator(const string& name)
{
    return Registered<VInputCreatorBase>(new VInputCreatorBase(name, 0, {}, nullptr));
}

TEST(LoadInputCreatorCache, TellsEachEntry)
{
    const string bytes = InputCacheBytes()
                             .number64(2)
                             .number64(1)
                             .entry("T1", "P1")
                             .number64(1)
                             .text("T2")
                             .text("P2")
                             .number32(-3)
                             .number64(2)
                             .text("a")
                             .weight(1.5)
                             .text("b")
                             .weight(2.0)
                             .bytes();
    string printed;

    EXPECT_TRUE(load(bytes, &printed));
    EXPECT_EQ(printed, "   INPUT CACHE: Type [T1] provided by [P1] (7 ip, 0 properties)\n"
                       "   INPUT CACHE: Type [T2] provided by [P2] (-3 ip, 2 properties)\n");
}

TEST(LoadInputCreatorCache, TakesAFileWithoutGroups)
{
    string printed;
    EXPECT_TRUE(load(InputCacheBytes().number64(0).bytes(), &printed));
    EXPECT_EQ(printed, "");
    EXPECT_TRUE(load(InputCacheBytes().number64(1).number64(0).bytes(), &printed));
    EXPECT_EQ(printed, "");
}

TEST(LoadInputCreatorCache, ComparesAll23BytesOfItsBeginning)
{
    const string good = InputCacheBytes().number64(0).bytes();
    string withoutZero = good;
    withoutZero[22] = 'x';
    EXPECT_FALSE(load(withoutZero));
    string other = good;
    other[0] = 'z';
    EXPECT_FALSE(load(other));
    EXPECT_FALSE(load(""));
    EXPECT_FALSE(load("ZelmInputCreatorCache\n"));
    EXPECT_TRUE(load(good + "what follows is not looked at"));
}

TEST(LoadInputCreatorCache, NeedsAFile)
{
    EXPECT_FALSE(LoadInputCreatorCache("/nowhere/at/all"));
    EXPECT_FALSE(LoadInputCreatorCache(""));
    EXPECT_FALSE(LoadInputCreatorCache(std::filesystem::temp_directory_path().string()));
}

TEST(LoadInputCreatorCache, CutAnywhereAnswersFalseAndKeepsTheEntriesBefore)
{
    const string first = InputCacheBytes().number64(1).number64(2).entry("Cut", "first").bytes();
    const string whole = InputCacheBytes()
                             .number64(1)
                             .number64(2)
                             .entry("Cut", "first")
                             .text("Cut")
                             .text("second")
                             .number32(1)
                             .number64(1)
                             .text("word")
                             .weight(2.0)
                             .bytes();
    ASSERT_TRUE(whole.starts_with(first));
    const string line = "   INPUT CACHE: Type [Cut] provided by [first] (7 ip, 0 properties)\n";
    for (std::size_t length = 0; length < whole.size(); ++length)
    {
        string printed;
        EXPECT_FALSE(load(whole.substr(0, length), &printed)) << length;
        EXPECT_EQ(printed, length < first.size() ? "" : line) << length;
    }
    EXPECT_TRUE(load(whole));
}

TEST(LoadInputCreatorCache, DoesNotBelieveNumbersThatTheFileCannotHold)
{
    constexpr std::uint64_t kHuge = std::uint64_t{1} << 60;
    EXPECT_FALSE(load(InputCacheBytes().number64(kHuge).bytes()));
    EXPECT_FALSE(load(InputCacheBytes().number64(1).number64(kHuge).bytes()));
    EXPECT_FALSE(load(InputCacheBytes().number64(1).number64(1).number64(kHuge).bytes()));
    EXPECT_FALSE(
        load(InputCacheBytes().number64(1).number64(1).number64(~std::uint64_t{0}).bytes()));
    EXPECT_FALSE(load(InputCacheBytes()
                          .number64(1)
                          .number64(1)
                          .text("t")
                          .text("p")
                          .number32(0)
                          .number64(kHuge)
                          .bytes()));
    EXPECT_FALSE(load(InputCacheBytes()
                          .number64(1)
                          .number64(1)
                          .text("t")
                          .text("p")
                          .number32(0)
                          .number64(kHuge)
                          .text("w")
                          .weight(1.0)
                          .bytes()));
}

TEST(LoadInputCreatorCache, ReadsManyWordsQuickly)
{
    constexpr int kWords = 50000;
    InputCacheBytes bytes;
    bytes.number64(1).number64(1).text("Wordy").text("p").number32(0).number64(kWords);
    for (int word = 0; word < kWords; ++word) bytes.text(std::to_string(word)).weight(1.0);
    EXPECT_TRUE(load(bytes.bytes()));
}

TEST(LoadInputCreatorCache, EntersTheRecordsBeforeTheEndOfACutFile)
{
    struct Cut
    {
    };
    const string type = Tolmen::Typename(typeid(Cut));
    const string whole = InputCacheBytes()
                             .number64(1)
                             .number64(2)
                             .entry(type, "cut first")
                             .entry(type, "cut second")
                             .bytes();
    EXPECT_FALSE(load(whole.substr(0, whole.size() - 1)));
    const Registered first = makeCreator("cut first");
    const Registered second = makeCreator("cut second");
    Visit visit;
    outputOf([&] { EXPECT_TRUE(iterateVInputCreators(typeid(Cut), visit)); });
    EXPECT_THAT(visit.names, ElementsAre("cut first"));
}

TEST(CreateInputCreatorCache, AnswersTrueAndWritesNothing)
{
    const string path =
        (std::filesystem::temp_directory_path() / "quorl-input-cache-never-written").string();
    EXPECT_TRUE(CreateInputCreatorCache(path));
    EXPECT_FALSE(std::filesystem::exists(path));
}

// What is known from the cache alone

struct Offline : testing::Test
{
    /// Enters a provider of a type, with one weighted word or none.
    static void enter(const std::type_info& type, const string& provider, double weight = 0.0)
    {
        InputCacheBytes bytes;
        bytes.number64(1).number64(1).text(Tolmen::Typename(type)).text(provider).number32(0);
        if (weight != 0.0)
            bytes.number64(1).text("w").weight(weight);
        else
            bytes.number64(0);
        ASSERT_TRUE(load(bytes.bytes()));
    }

    const RefPtr<VCreationPreferences> wanted{new VCreationPreferences("w")};
};

TEST_F(Offline, AProviderIsFoundByItsNameIfNobodyElseIsThere)
{
    struct Alone
    {
    };
    enter(typeid(Alone), "alone provider");
    const Registered provider = makeCreator("alone provider");

    EXPECT_EQ(
        outputOf([&] { EXPECT_EQ(findBestVInputCreator(typeid(Alone), {}), provider.handle()); }),
        "");
    EXPECT_EQ(findBestVInputCreator(typeid(Alone), {}), provider.handle()) << "it stays known";
}

TEST_F(Offline, ALoadedOneOfTheSameScoreIsPreferred)
{
    struct Same
    {
    };
    enter(typeid(Same), "same offline");
    const Registered offline = makeCreator("same offline");
    const Registered loaded = makeCreator("same loaded");
    registerVInput(typeid(Same), loaded.handle());

    EXPECT_EQ(findBestVInputCreator(typeid(Same), {}), loaded.handle());
    EXPECT_EQ(findBestVInputCreator(typeid(Same), wanted), loaded.handle());
    unregisterVInput(typeid(Same), loaded.handle());
}

TEST_F(Offline, ABetterOneWins)
{
    struct Better
    {
    };
    enter(typeid(Better), "better worst", -2.0);
    enter(typeid(Better), "better best", 5.0);
    enter(typeid(Better), "better second", 5.0);
    const Registered best = makeCreator("better best");
    const Registered loaded = makeCreator("better loaded");
    registerVInput(typeid(Better), loaded.handle());

    EXPECT_EQ(findBestVInputCreator(typeid(Better), wanted), best.handle());
    EXPECT_EQ(findBestVInputCreator(typeid(Better), {}), loaded.handle());
    unregisterVInput(typeid(Better), loaded.handle());
}

TEST_F(Offline, AWinnerThatCannotBeFoundIsSaidAndTheBestLoadedOneTaken)
{
    struct Missing
    {
    };
    enter(typeid(Missing), "missing provider", 1.5);
    const Registered loaded = makeCreator("missing loaded");
    registerVInput(typeid(Missing), loaded.handle());

    EXPECT_EQ(outputOf([&] {
                  EXPECT_EQ(findBestVInputCreator(typeid(Missing), wanted), loaded.handle());
              }),
              " Too bad, no object missing provider, weight 2.5\n");
    unregisterVInput(typeid(Missing), loaded.handle());
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(findBestVInputCreator(typeid(Missing), wanted)); }),
              " Too bad, no object missing provider, weight 2.5\n");
}

TEST_F(Offline, OfEqualWordsTheFirstWeightCounts)
{
    struct Repeated
    {
    };
    ASSERT_TRUE(load(InputCacheBytes()
                         .number64(1)
                         .number64(1)
                         .text(Tolmen::Typename(typeid(Repeated)))
                         .text("repeated provider")
                         .number32(0)
                         .number64(2)
                         .text("w")
                         .weight(3.0)
                         .text("w")
                         .weight(9.0)
                         .bytes()));

    EXPECT_EQ(outputOf([&] { findBestVInputCreator(typeid(Repeated), wanted); }),
              " Too bad, no object repeated provider, weight 4\n");
}

TEST_F(Offline, AWalkFindsAllProvidersOnce)
{
    struct Walked
    {
    };
    enter(typeid(Walked), "walked first");
    enter(typeid(Walked), "walked missing");
    enter(typeid(Walked), "walked last");
    const Registered first = makeCreator("walked first");
    const Registered last = makeCreator("walked last");
    const string line = "VInputCreator.cppiterateVInputCreators(" +
                        Tolmen::Typename(typeid(Walked)) + ") GOT OFFLINE STUFF\n";
    Visit visit;
    EXPECT_EQ(outputOf([&] { EXPECT_TRUE(iterateVInputCreators(typeid(Walked), visit)); }), line);
    EXPECT_THAT(visit.names, ElementsAre("walked first", "walked last"));

    Visit again;
    EXPECT_EQ(outputOf([&] { EXPECT_TRUE(iterateVInputCreators(typeid(Walked), again)); }), line)
        << "the one that is missing is still known";
    EXPECT_TRUE(again.names.empty());
}

TEST_F(Offline, AProviderLeavesTheTableBeforeItStopsTheWalk)
{
    struct Stopped
    {
    };
    enter(typeid(Stopped), "stopped first");
    enter(typeid(Stopped), "stopped second");
    const Registered first = makeCreator("stopped first");
    const Registered second = makeCreator("stopped second");
    Visit one;
    one.goesOn = false;
    outputOf([&] { EXPECT_FALSE(iterateVInputCreators(typeid(Stopped), one)); });
    Visit rest;
    outputOf([&] { EXPECT_TRUE(iterateVInputCreators(typeid(Stopped), rest)); });

    EXPECT_THAT(one.names, ElementsAre("stopped first"));
    EXPECT_THAT(rest.names, ElementsAre("stopped second"));
}

} // namespace
} // namespace Quorl
