#include <quorl/foundation/VGlobals.h>

#include <quorl/values/ValuePool.h>
#include <quorl/values/ValuePoolCreator.h>

#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace Quorl
{
namespace
{

TEST(VGlobals, IsOneForTheProcess)
{
    EXPECT_EQ(&VGlobals::theGlobals(), &VGlobals::theGlobals());
    static_assert(!std::is_default_constructible_v<VGlobals>);
}

TEST(VGlobals, HasAnEmptyTableOfModules)
{
    ASSERT_TRUE(static_cast<bool>(VGlobals::theGlobals().modules));
}

TEST(VGlobals, HoldsPoolsWeaklyAndTheirCreatorsStrongly)
{
    static_assert(std::is_same_v<decltype(VGlobals::pools), std::map<string, WeakPtr<ValuePool>>>);
    static_assert(
        std::is_same_v<decltype(VGlobals::poolCreators), std::set<RefPtr<ValuePoolCreator>>>);
    static_assert(
        std::is_same_v<decltype(VGlobals::quitters), std::set<WeakPtr<ApplicationQuitter>>>);
}

TEST(VGlobals, DoesNothingMoreThanCallQuitters)
{
    const VGlobals& globals = VGlobals::theGlobals();
    const std::string output = QuorlTest::outputOf([&] { globals.quit(); });

    EXPECT_EQ(output, "") << "and the process goes on";
}

} // namespace
} // namespace Quorl
