#include <quorl/foundation/VGlobals.h>

#include <quorl/values/ValuePool.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

class Quitter final : public ApplicationQuitter
{
public:
    explicit Quitter(int& calls) : calls_(calls) {}
    void quit() override { ++calls_; }

private:
    int& calls_;
};

TEST(VGlobals, IsOneForTheProcess)
{
    EXPECT_EQ(&VGlobals::theGlobals(), &VGlobals::theGlobals());
    EXPECT_TRUE(static_cast<bool>(VGlobals::theGlobals().modules));
}

TEST(VGlobals, QuitsNothingWithoutQuitters)
{
    VGlobals::theGlobals().quit();
    SUCCEED() << "the process goes on";
}

TEST(VGlobals, QuitsTheLiveAndPassesOverTheDead)
{
    int calls = 0;
    const RefPtr<Quitter> first(new Quitter(calls));
    {
        const RefPtr<Quitter> dead(new Quitter(calls));
    }
    const RefPtr<Quitter> second(new Quitter(calls));
    EXPECT_TRUE(VGlobals::theGlobals().quitters.contains(WeakPtr<ApplicationQuitter>(first)));

    VGlobals::theGlobals().quit();

    EXPECT_EQ(calls, 2);
}

TEST(VGlobals, QuitsWhatNobodyOwnsWithoutEndingIt)
{
    int calls = 0;
    Quitter onTheStack(calls);
    VGlobals::theGlobals().quit();
    VGlobals::theGlobals().quit();

    EXPECT_EQ(calls, 2);
}

TEST(VGlobals, QuitsOnceWhatIsEnteredTwice)
{
    int calls = 0;
    const RefPtr<Quitter> quitter(new Quitter(calls));
    VGlobals::theGlobals().quitters.insert(WeakPtr<ApplicationQuitter>(quitter));
    VGlobals::theGlobals().quit();

    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace Quorl
