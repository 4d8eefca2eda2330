#include <quorl/values/ValuePoolCreator.h>

#include <quorl/foundation/VGlobals.h>
#include <quorl/values/ValuePool.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace Quorl
{
namespace
{

/// Makes pools whose name begins with its own.
class Maker final : public ValuePoolCreator
{
public:
    explicit Maker(const string& head) : head_(head) {}
    RefPtr<ValuePool> createPool(const string& name) override
    {
        ++asked;
        if (!name.starts_with(head_)) return {};
        made = RefPtr<ValuePool>(new ValuePool(name));
        return made;
    }
    int asked = 0;
    RefPtr<ValuePool> made;

private:
    string head_;
};

TEST(ValuePoolCreator, IsAskedForNamesThatNobodyHasUntilOneMakesThePool)
{
    const RefPtr<Maker> maker(new Maker("made "));
    auto& creators = VGlobals::theGlobals().poolCreators;
    creators.insert(maker);

    EXPECT_EQ(ValuePool::getValuePool("not to be had").referer, nullptr);
    EXPECT_EQ(maker->asked, 1);
    EXPECT_EQ(ValuePool::getValuePool("made here"), maker->made);
    EXPECT_EQ(ValuePool::getValuePool("made here"), maker->made);
    EXPECT_EQ(maker->asked, 2);

    creators.erase(maker);
}

TEST(ValuePoolCreator, IsAskedInTurnUntilOneMakesAPool)
{
    std::vector<RefPtr<Maker>> makers;
    for (const char* head : {"never", "in turn", "never", "in turn"})
        makers.emplace_back(new Maker(head));
    auto& creators = VGlobals::theGlobals().poolCreators;
    creators.insert(makers.begin(), makers.end());
    std::sort(makers.begin(), makers.end());

    const RefPtr<ValuePool> pool = ValuePool::getValuePool("in turn");

    ASSERT_TRUE(pool);
    bool isMade = false;
    for (const auto& maker : makers)
    {
        EXPECT_EQ(maker->asked, isMade ? 0 : 1);
        isMade = isMade || maker->made == pool;
        creators.erase(maker);
    }
    EXPECT_TRUE(isMade);
}

TEST(ValuePoolCreator, IsNotAskedForTheNameOfAPoolThatHasEnded)
{
    const RefPtr<Maker> maker(new Maker("ended"));
    auto& creators = VGlobals::theGlobals().poolCreators;
    creators.insert(maker);
    {
        const RefPtr<ValuePool> pool(new ValuePool("ended before"));
    }

    EXPECT_FALSE(ValuePool::getValuePool("ended before"));
    EXPECT_EQ(maker->asked, 0);

    creators.erase(maker);
}

TEST(ValuePool, BearsACreatorThatLeavesInItsOwnCall)
{
    struct Once final : ValuePoolCreator
    {
        RefPtr<ValuePool> createPool(const string&) override
        {
            auto& creators = VGlobals::theGlobals().poolCreators;
            creators.erase(RefPtr<ValuePoolCreator>(this));
            ++*calls;
            return {};
        }
        std::shared_ptr<int> calls = std::make_shared<int>(0);
    };
    auto& creators = VGlobals::theGlobals().poolCreators;
    std::vector<std::shared_ptr<int>> calls;
    for (int number = 0; number < 3; ++number)
    {
        auto* const creator = new Once;
        calls.push_back(creator->calls);
        creators.insert(RefPtr<ValuePoolCreator>(creator));
    }
    EXPECT_FALSE(ValuePool::getValuePool("nobody makes this"));
    for (const auto& count : calls) EXPECT_EQ(*count, 1);
}

} // namespace
} // namespace Quorl
