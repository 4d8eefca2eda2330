#include <quorl/modules/VSaveable.h>
#include <tests/modules/TestSaver.h>
#include <tests/support/Node.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>

namespace Quorl
{
namespace
{

using QuorlTest::TestSaver;
using QuorlTest::ticksOf;
using testing::ElementsAre;

RefPtr<TestSaver> makeSaver(const string& extension)
{
    return RefPtr<TestSaver>(new TestSaver(extension));
}

struct Visit final : VSaveable::SaveIterator
{
    bool apply(const string& name, const RefPtr<ZelmSaver>& saver) override
    {
        seen.push_back(name + "." + saver->extension);
        return seen.size() < most;
    }
    std::vector<string> seen;
    std::size_t most = 100;
};

struct Savers : testing::Test
{
    VSaveable collection;
    RefPtr<TestSaver> a = makeSaver("x");
    RefPtr<TestSaver> b = makeSaver("y");
};

using VSaveableTest = Savers;

TEST_F(VSaveableTest, HasNothingAtFirst)
{
    Visit visit;
    EXPECT_FALSE(collection.autosave());
    EXPECT_EQ(collection.iterateSavers(visit), 0);
    EXPECT_FALSE(collection.getMostRecentSaver());
    EXPECT_FALSE(collection.getSaver("a").referer);
}

TEST_F(VSaveableTest, FindsByNameAndReplacesSilently)
{
    collection.addSaver("name", a);
    EXPECT_EQ(collection.getSaver("name"), a);
    collection.addSaver("name", b);
    EXPECT_EQ(collection.getSaver("name"), b);
    EXPECT_FALSE(collection.getSaver("Name").referer);
}

TEST_F(VSaveableTest, FindsTheFirstByNameOfAnExtensionAsItIsWritten)
{
    const auto dotted = makeSaver(".x");
    collection.addSaver("b", b);
    collection.addSaver("c", a);
    const auto first = makeSaver("x");
    collection.addSaver("a", first);
    collection.addSaver("0", RefPtr<ZelmSaver>());
    collection.addSaver("d", dotted);

    EXPECT_EQ(collection.getSaverByExt("x"), first);
    EXPECT_EQ(collection.getSaverByExt(".x"), dotted);
    EXPECT_FALSE(collection.getSaverByExt("X").referer);
    EXPECT_FALSE(collection.getSaverByExt("").referer);
}

TEST_F(VSaveableTest, KnowsNoMostRecentBeforeOneHasSaved)
{
    collection.addSaver("a", a);
    b->succeeds = false;
    collection.addSaver("b", b);
    b->Save("failed");

    EXPECT_FALSE(collection.getMostRecentSaver());
    EXPECT_FALSE(collection.autosave());
}

TEST_F(VSaveableTest, KnowsTheMostRecentByAgeNotByName)
{
    collection.addSaver("a", a);
    collection.addSaver("b", b);
    b->Save("1");
    a->Save("2");
    EXPECT_EQ(collection.getMostRecentSaver(), a);
    b->Save("3");
    EXPECT_EQ(collection.getMostRecentSaver(), b);
    a->succeeds = false;
    a->Save("4");
    EXPECT_EQ(collection.getMostRecentSaver(), b);
}

TEST_F(VSaveableTest, TakesTheLaterByNameOfEquallyOldOnes)
{
    collection.addSaver("a", a);
    collection.addSaver("b", b);
    a->lastFile = b->lastFile = "file";
    static_cast<Ageable&>(*a) = static_cast<Ageable&>(*b) = Ageable(5);
    EXPECT_EQ(collection.getMostRecentSaver(), b);
    static_cast<Ageable&>(*b) = Ageable::Ooooold;
    EXPECT_EQ(collection.getMostRecentSaver(), a);
}

TEST_F(VSaveableTest, SavesAgainWhatWasSavedLast)
{
    collection.addSaver("a", a);
    collection.addSaver("b", b);
    a->Save("first");
    b->Save("last");

    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(collection.autosave()); }), 1);
    EXPECT_THAT(b->files, ElementsAre("last", "last"));
    EXPECT_THAT(a->files, ElementsAre("first"));
    b->succeeds = false;
    EXPECT_EQ(ticksOf([&] { EXPECT_FALSE(collection.autosave()); }), 0);
    EXPECT_EQ(b->lastFile, "last");
}

TEST_F(VSaveableTest, CountsTheSaverThatStopsTheWalk)
{
    collection.addSaver("b", b);
    collection.addSaver("a", a);
    collection.addSaver("0 dead", RefPtr<ZelmSaver>());
    collection.addSaver("c", makeSaver("z"));
    Visit two;
    two.most = 2;

    EXPECT_EQ(collection.iterateSavers(two), 2);
    EXPECT_THAT(two.seen, ElementsAre("a.x", "b.y"));
    Visit all;
    EXPECT_EQ(collection.iterateSavers(all), 3);
}

TEST_F(VSaveableTest, KeepsASaverOverItsReplacementInAWalk)
{
    struct Replace final : VSaveable::SaveIterator
    {
        explicit Replace(VSaveable& savers) : collection(savers) {}
        bool apply(const string& name, const RefPtr<ZelmSaver>& saver) override
        {
            collection.addSaver(name, RefPtr<ZelmSaver>());
            return saver->extension == "x";
        }
        VSaveable& collection;
    } visitor(collection);
    collection.addSaver("a", a);
    a = RefPtr<TestSaver>();

    EXPECT_EQ(collection.iterateSavers(visitor), 1);
}

TEST(VSaveable, MayEndInAWalkOfItsSavers)
{
    struct End final : VSaveable::SaveIterator
    {
        explicit End(std::unique_ptr<VSaveable>& savers) : collection(savers) {}
        bool apply(const string& name, const RefPtr<ZelmSaver>& saver) override
        {
            collection.reset();
            seen += name + saver->extension;
            return true;
        }
        std::unique_ptr<VSaveable>& collection;
        string seen;
    };
    auto collection = std::make_unique<VSaveable>();
    collection->addSaver("a", makeSaver("x"));
    collection->addSaver("b", makeSaver("y"));
    End end(collection);

    EXPECT_EQ(collection->iterateSavers(end), 2);
    EXPECT_EQ(end.seen, "axby");
}

TEST(VSaveable, HasOneForTheWholeApplication)
{
    VSaveable& state = VSaveable::GlobalState();
    state.addSaver("global", makeSaver("g"));
    EXPECT_EQ(&VSaveable::GlobalState(), &state);
    EXPECT_TRUE(VSaveable::GlobalState().getSaver("global"));
}

TEST(VSaveable, IsPartOfEachObject)
{
    QuorlTest::Network network;
    const auto object = network.node("saved");
    object->addSaver("own", makeSaver("o"));
    EXPECT_TRUE(object->getSaver("own"));
    EXPECT_FALSE(network.node("other")->getSaver("own"));
}

/// Random saves, against the number of the last success of each name.
TEST(VSaveable, AgreesWithAPlainRecord)
{
    const auto seed = std::random_device()();
    std::mt19937 random(seed);
    VSaveable collection;
    std::map<string, RefPtr<TestSaver>> savers;
    std::map<string, int> lastSuccess;
    for (const char* name : {"a", "b", "c", "d"})
    {
        savers[name] = makeSaver(name);
        collection.addSaver(name, savers[name]);
    }
    for (int step = 1; step < 500; ++step)
    {
        const string name(1, static_cast<char>('a' + random() % 4));
        savers[name]->succeeds = random() % 3 != 0;
        if (savers[name]->Save(std::to_string(step))) lastSuccess[name] = step;

        string expected;
        for (const auto& [saved, when] : lastSuccess)
            if (expected.empty() || when > lastSuccess[expected]) expected = saved;
        const RefPtr<ZelmSaver> found = collection.getMostRecentSaver();
        EXPECT_EQ(found ? found->extension : "", expected) << "seed " << seed << ", step " << step;
    }
}

} // namespace
} // namespace Quorl
