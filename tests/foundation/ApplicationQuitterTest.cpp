#include <quorl/foundation/ApplicationQuitter.h>

#include <quorl/foundation/VGlobals.h>

#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::errorOutputOf;
using QuorlTest::outputOf;

/// Notes itself when it is called.
class Quitter : public ApplicationQuitter
{
public:
    explicit Quitter(std::vector<const Quitter*>& calls) : calls_(calls) {}
    void quit() override { calls_.push_back(this); }

private:
    std::vector<const Quitter*>& calls_;
};

using Calls = std::vector<const Quitter*>;

void quit()
{
    VGlobals::theGlobals().quit();
}

TEST(ApplicationQuitter, IsEnteredByBeingMadeAndNotOwned)
{
    Calls calls;
    const RefPtr<Quitter> quitter(new Quitter(calls));

    EXPECT_TRUE(VGlobals::theGlobals().quitters.contains(WeakPtr<ApplicationQuitter>(quitter)));
    EXPECT_EQ(quitter.referer->strong, 1);
    quit();
    EXPECT_EQ(calls, Calls{quitter.rawptr()});
}

TEST(ApplicationQuitter, IsPassedOverWithoutAReportWhenItHasDied)
{
    Calls calls;
    const RefPtr<Quitter> first(new Quitter(calls));
    {
        const RefPtr<Quitter> owned(new Quitter(calls));
        const Quitter onTheStack(calls);
    }
    const RefPtr<Quitter> second(new Quitter(calls));
    const auto entries = VGlobals::theGlobals().quitters.size();
    std::string errors;
    const std::string output = outputOf([&] { errors = errorOutputOf(quit); });

    EXPECT_EQ(calls.size(), 2U);
    EXPECT_EQ(output + errors, "");
    EXPECT_EQ(VGlobals::theGlobals().quitters.size(), entries) << "the dead stay";
}

TEST(ApplicationQuitter, LeavesTheTableNowAndThenWhenItHasDied)
{
    Calls calls;
    const RefPtr<Quitter> lasting(new Quitter(calls));
    std::vector<WeakPtr<Quitter>> blocks; // each of its own
    for (int number = 0; number < 1000; ++number)
        blocks.emplace_back(RefPtr<Quitter>(new Quitter(calls)));

    EXPECT_LE(VGlobals::theGlobals().quitters.size(), 32U);
    quit();
    EXPECT_EQ(calls, Calls{lasting.rawptr()});
}

TEST(ApplicationQuitter, IsCalledInTheOrderOfBlocks)
{
    Calls calls;
    std::vector<RefPtr<Quitter>> quitters;
    for (int i = 0; i < 20; ++i) quitters.emplace_back(new Quitter(calls));
    std::sort(quitters.begin(), quitters.end());
    quit();

    Calls expected;
    for (const RefPtr<Quitter>& quitter : quitters) expected.push_back(quitter.rawptr());
    EXPECT_EQ(calls, expected);
}

TEST(ApplicationQuitter, IsCalledThoughNobodyOwnsItAndDoesNotEnd)
{
    Calls calls;
    const Quitter onTheStack(calls);
    quit();
    quit();

    EXPECT_EQ(calls, (Calls{&onTheStack, &onTheStack}));
}

TEST(ApplicationQuitter, IsCalledOnceThoughEnteredTwice)
{
    Calls calls;
    const RefPtr<Quitter> quitter(new Quitter(calls));
    VGlobals::theGlobals().quitters.insert(WeakPtr<ApplicationQuitter>(quitter));
    quit();

    EXPECT_EQ(calls.size(), 1U);
}

TEST(ApplicationQuitter, MayMakeAndEndOthersInItsCall)
{
    struct Busy final : Quitter
    {
        using Quitter::Quitter;
        void quit() override
        {
            Quitter::quit();
            victim = RefPtr<Quitter>();
            if (!made) made = RefPtr<Quitter>(new Quitter(more));
        }
        RefPtr<Quitter> victim;
        RefPtr<Quitter> made;
        Calls more;
    };
    Calls calls;
    const RefPtr<Busy> busy(new Busy(calls));
    Calls victims;
    busy->victim = RefPtr<Quitter>(new Quitter(victims));
    const bool comesFirst = busy->victim < busy;
    quit();

    EXPECT_EQ(calls, Calls{busy.rawptr()});
    EXPECT_EQ(victims.size(), comesFirst ? 1U : 0U);
    quit();
    EXPECT_GE(busy->more.size(), 1U);
}

} // namespace
} // namespace Quorl
