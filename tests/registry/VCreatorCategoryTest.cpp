#include <quorl/registry/VCreatorCategory.h>
#include <tests/support/TestCreator.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::Registered;
using QuorlTest::TestCreator;
using testing::ElementsAre;

struct Names final : VCreatorCategory::Iterator
{
    bool apply(const WeakPtr<VCreatorBase>& creator) override
    {
        names.push_back(creator->getName());
        return names.size() < most;
    }
    std::vector<string> names;
    std::size_t most = 100;
};

int countOf(const string& category)
{
    Names visitor;
    return VCreatorCategory::iterate(category, visitor);
}

TEST(VCreatorCategory, TellsAMissingOneFromAnEmptyOne)
{
    EXPECT_EQ(countOf("Missing"), -1);
    VCreatorCategory::getProperties("Missing");
    EXPECT_EQ(countOf("Missing"), 0);
}

TEST(VCreatorCategory, KeepsItsTexts)
{
    VCreatorPropertyBase& properties = VCreatorCategory::getProperties("Described");
    properties.element[7] = "somebody";
    const Registered creator(new TestCreator("Described/A"));

    EXPECT_EQ(&VCreatorCategory::getProperties("Described"), &properties);
    EXPECT_EQ(properties.Author(), "somebody");
    EXPECT_EQ(countOf("Described"), 1);
}

TEST(VCreatorCategory, VisitsItsCreatorsInTheOrderOfRegistration)
{
    const Registered b(new TestCreator("Ordered/B"));
    const Registered a(new TestCreator("Ordered/A"));
    const Registered deeper(new TestCreator("Ordered/Deeper/C"));
    Names all;

    EXPECT_EQ(VCreatorCategory::iterate("Ordered", all), 2);
    EXPECT_THAT(all.names, ElementsAre("Ordered/B", "Ordered/A"));
    EXPECT_EQ(countOf("Ordered/Deeper"), 1);
}

TEST(VCreatorCategory, DoesNotCountTheOneThatStopped)
{
    const Registered a(new TestCreator("Stopped/A"));
    const Registered b(new TestCreator("Stopped/B"));
    const Registered c(new TestCreator("Stopped/C"));
    Names two;
    two.most = 2;

    EXPECT_EQ(VCreatorCategory::iterate("Stopped", two), 1);
    EXPECT_EQ(two.names.size(), 2U);
}

TEST(VCreatorCategory, PassesOverTheDead)
{
    Registered gone(new TestCreator("Dead/A"));
    const Registered left(new TestCreator("Dead/B"));
    gone.drop();
    Names all;

    EXPECT_EQ(VCreatorCategory::iterate("Dead", all), 1);
    EXPECT_THAT(all.names, ElementsAre("Dead/B"));
    VCreatorCategory::addCreator({});
    VCreatorCategory::addCreator(WeakPtr<VCreatorBase>(gone.handle()));
    EXPECT_EQ(countOf("Dead"), 1);
}

TEST(VCreatorCategory, HasOneWithoutName)
{
    const Registered creator(new TestCreator("without category"));
    EXPECT_GE(countOf(""), 1);
}

TEST(VCreatorCategory, ReachesACreatorThatIsMadeInItsWalk)
{
    struct MakeAnother final : VCreatorCategory::Iterator
    {
        bool apply(const WeakPtr<VCreatorBase>& /*creator*/) override
        {
            if (!made)
                made = std::make_unique<Registered<TestCreator>>(new TestCreator("Growing/Second"));
            return true;
        }
        std::unique_ptr<Registered<TestCreator>> made;
    } visitor;
    const Registered first(new TestCreator("Growing/First"));

    EXPECT_EQ(VCreatorCategory::iterate("Growing", visitor), 2);
}

} // namespace
} // namespace Quorl
