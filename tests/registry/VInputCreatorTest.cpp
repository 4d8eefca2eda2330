#include <quorl/registry/VInputCreator.h>
#include <quorl/registry/VInputCreatorBase.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/TestCreator.h>
#include <tests/support/Warnings.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::outputOf;
using QuorlTest::Registered;
using testing::ElementsAre;

RefPtr<VCreationPreferences> words(const string& word)
{
    return RefPtr<VCreationPreferences>(new VCreationPreferences(word));
}

Registered<VInputCreatorBase> makeCreator(const string& name,
                                          const RefPtr<VCreationPreferences>& offers = {})
{
    return Registered<VInputCreatorBase>(new VInputCreatorBase(name, 0, offers, "text"));
}

struct Visit final : VInputCreatorIterator
{
    bool apply(const WeakPtr<VInputCreatorBase>& creator) override
    {
        names.push_back(creator->getName());
        if (whenVisited) whenVisited();
        return names.size() < most;
    }
    std::vector<string> names;
    std::size_t most = 100;
    std::function<void()> whenVisited;
};

TEST(VInputCreatorBase, KeepsWhatItIsGiven)
{
    const RefPtr<VCreationPreferences> offers = words("w");
    const char* const text = "pointer";
    const Registered creator(new VInputCreatorBase("kept creator", 9, offers, text));

    EXPECT_EQ(creator->preferences, offers);
    EXPECT_EQ(creator->priority, 9);
    EXPECT_EQ(creator->VManagedObject::priority, 9);
    EXPECT_EQ(creator->text, text);
    EXPECT_TRUE(creator->getDomainType() == typeid(VInputCreatorBase));
    creator->setPriority(2);
    EXPECT_EQ(creator->priority, 9) << "the registry's alone has moved";
    EXPECT_EQ(creator->VManagedObject::priority, 2);
}

TEST(RegisterVInput, WarnsOnceOfADeadCreator)
{
    struct Unserved
    {
    };
    const QuorlTest::Warnings warnings;
    const string raw = typeid(Unserved).name();
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(registerVInput(typeid(Unserved), {})); }),
              "*WARNING*: No creator of input " + raw + " given, cannot register input!\n");

    EXPECT_THAT(warnings.texts(),
                ElementsAre(testing::MatchesRegex("No creator of input .*Unserved.* given, cannot "
                                                  "register input!")));
    EXPECT_FALSE(unregisterVInput(typeid(Unserved), {}));

    WeakPtr<VInputCreatorBase> dead;
    {
        const Registered leaving = makeCreator("leaving");
        dead = leaving.handle();
    }
    ASSERT_FALSE(dead);
    outputOf([&] { EXPECT_FALSE(registerVInput(typeid(Unserved), dead)); });
    EXPECT_EQ(warnings.texts().size(), 2U);
    EXPECT_FALSE(unregisterVInput(typeid(Unserved), dead)) << "it was not entered";
}

TEST(RegisterVInput, MakesTwoEntriesOfACreatorThatIsRegisteredTwice)
{
    struct Twice
    {
    };
    const Registered creator = makeCreator("twice");
    EXPECT_TRUE(registerVInput(typeid(Twice), creator.handle()));
    EXPECT_TRUE(registerVInput(typeid(Twice), creator.handle()));
    Visit visit;
    EXPECT_TRUE(iterateVInputCreators(typeid(Twice), visit));
    EXPECT_THAT(visit.names, ElementsAre("twice", "twice"));

    EXPECT_TRUE(unregisterVInput(typeid(Twice), creator.handle()));
    Visit once;
    iterateVInputCreators(typeid(Twice), once);
    EXPECT_THAT(once.names, ElementsAre("twice"));
    EXPECT_TRUE(unregisterVInput(typeid(Twice), creator.handle()));
    EXPECT_FALSE(unregisterVInput(typeid(Twice), creator.handle()));
}

TEST(UnregisterVInput, FindsOneThatHasDied)
{
    struct Died
    {
    };
    Registered creator = makeCreator("dying");
    const WeakPtr<VInputCreatorBase> seen = creator.handle();
    registerVInput(typeid(Died), seen);
    creator.drop();

    EXPECT_FALSE(seen);
    EXPECT_TRUE(unregisterVInput(typeid(Died), seen));
}

TEST(IterateVInputCreators, GoesInTheOrderOfRegistrationOverTheLiving)
{
    struct Ordered
    {
    };
    const Registered b = makeCreator("ordered b");
    Registered gone = makeCreator("ordered gone");
    const Registered a = makeCreator("ordered a");
    for (const auto* creator : {&b, static_cast<const Registered<VInputCreatorBase>*>(&gone), &a})
        registerVInput(typeid(Ordered), creator->handle());
    gone.drop();
    Visit all;
    EXPECT_EQ(outputOf([&] { EXPECT_TRUE(iterateVInputCreators(typeid(Ordered), all)); }), "");
    EXPECT_THAT(all.names, ElementsAre("ordered b", "ordered a"));

    Visit one;
    one.most = 1;
    EXPECT_FALSE(iterateVInputCreators(typeid(Ordered), one));
    EXPECT_EQ(one.names.size(), 1U);
}

TEST(IterateVInputCreators, SurvivesAVisitorThatUnregistersAndRegisters)
{
    struct Moving
    {
    };
    const Registered first = makeCreator("moving first");
    const Registered second = makeCreator("moving second");
    const Registered third = makeCreator("moving third");
    registerVInput(typeid(Moving), first.handle());
    registerVInput(typeid(Moving), second.handle());
    Visit visit;
    visit.whenVisited = [&] {
        if (visit.names.size() > 1) return;
        unregisterVInput(typeid(Moving), first.handle());
        unregisterVInput(typeid(Moving), second.handle());
        registerVInput(typeid(Moving), third.handle());
    };

    EXPECT_TRUE(iterateVInputCreators(typeid(Moving), visit));
    EXPECT_THAT(visit.names, ElementsAre("moving first", "moving third"));
}

TEST(FindBestVInputCreator, IsEmptyAndSilentForAnUnknownType)
{
    struct Unknown
    {
    };
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(findBestVInputCreator(typeid(Unknown), {})); }), "");
}

TEST(FindBestVInputCreator, TakesTheFirstLivingOneWithoutPreferences)
{
    struct Plain
    {
    };
    Registered gone = makeCreator("plain gone");
    const Registered first = makeCreator("plain first", words("x"));
    const Registered second = makeCreator("plain second", words("y"));
    for (const RefPtr<VInputCreatorBase>& creator :
         {gone.handle(), first.handle(), second.handle()})
        registerVInput(typeid(Plain), creator);
    gone.drop();

    EXPECT_EQ(findBestVInputCreator(typeid(Plain), {}), first.handle());
    EXPECT_EQ(findBestVInputCreator(typeid(Plain), words("y")), second.handle());
    EXPECT_EQ(findBestVInputCreator(typeid(Plain), words("z")), first.handle());
}

/// Sets all weights of a set.
struct SetAll final : VCreationPreferences::Iterator
{
    explicit SetAll(double newWeight) : value(newWeight) {}
    bool apply(const string& /*word*/, double& weight) override
    {
        weight = value;
        return true;
    }
    double value;
};

RefPtr<VCreationPreferences> weighted(const string& word, double weight)
{
    RefPtr<VCreationPreferences> made = words(word);
    SetAll set(weight);
    made->iterate(set);
    return made;
}

TEST(FindBestVInputCreator, NeverTakesAScoreOfZeroOrLess)
{
    struct Negative
    {
    };
    const Registered bad = makeCreator("negative", weighted("w", -5.0));
    const Registered zero = makeCreator("zero", weighted("w", -1.0));
    registerVInput(typeid(Negative), bad.handle());
    registerVInput(typeid(Negative), zero.handle());

    EXPECT_FALSE(findBestVInputCreator(typeid(Negative), words("w")));
    EXPECT_EQ(findBestVInputCreator(typeid(Negative), words("other")), bad.handle());
}

/// The first of the highest score above 0, on random offers.
TEST(FindBestVInputCreator, AgreesWithAPlainSearch)
{
    struct Random
    {
    };
    const auto seed = std::random_device()();
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> weight(-3, 3);
    for (int round = 0; round < 200; ++round)
    {
        const double asked = weight(random);
        std::vector<std::unique_ptr<Registered<VInputCreatorBase>>> creators;
        const VInputCreatorBase* expected = nullptr;
        double best = 0.0;
        for (int number = 0; number < 6; ++number)
        {
            const double offered = weight(random);
            const bool hasNone = random() % 5 == 0;
            creators.push_back(
                std::make_unique<Registered<VInputCreatorBase>>(new VInputCreatorBase(
                    "random " + std::to_string(number), 0,
                    hasNone ? RefPtr<VCreationPreferences>() : weighted("w", offered), nullptr)));
            registerVInput(typeid(Random), creators.back()->handle());
            const double score = hasNone ? 1.0 : 1.0 + asked * offered;
            if (score <= best) continue;
            best = score;
            expected = creators.back()->handle().rawptr();
        }
        const WeakPtr<VInputCreatorBase> found =
            findBestVInputCreator(typeid(Random), weighted("w", asked));
        EXPECT_EQ(found.rawptr(), expected) << "seed " << seed << ", round " << round;
        for (const auto& creator : creators)
            EXPECT_TRUE(unregisterVInput(typeid(Random), creator->handle()));
    }
}

TEST(VInputCreator, IsRegisteredForItsTypeAsLongAsItLives)
{
    struct Bound
    {
    };
    {
        const Registered creator(new VInputCreator<Bound, VInputCreatorBase>(
            "bound", 0, RefPtr<VCreationPreferences>(), "text"));
        EXPECT_EQ(findBestVInputCreator(typeid(Bound), {}), creator.handle());
    }
    Visit visit;
    EXPECT_TRUE(iterateVInputCreators(typeid(Bound), visit));
    EXPECT_TRUE(visit.names.empty());
    EXPECT_FALSE(unregisterVInput(typeid(Bound), {})) << "no entry was left";
}

TEST(VInputCreator, WithdrawsFromTheStackAsWell)
{
    struct Short
    {
    };
    {
        const VInputCreator<Short, VInputCreatorBase> creator(
            "on the stack", 0, RefPtr<VCreationPreferences>(), nullptr);
        EXPECT_TRUE(findBestVInputCreator(typeid(Short), {}));
    }
    EXPECT_FALSE(findBestVInputCreator(typeid(Short), {}));
}

TEST(VInputCreator, TakesBracedPreferences)
{
    struct Braced
    {
    };
    const Registered creator(new VInputCreator<Braced, VInputCreatorBase>("braced", 3, {}, "text"));
    EXPECT_FALSE(creator->preferences);
    EXPECT_EQ(creator->priority, 3);
    EXPECT_EQ(findBestVInputCreator(typeid(Braced), {}), creator.handle());
}

} // namespace
} // namespace Quorl
