#include <quorl/values/ValuePool.h>

#include <quorl/foundation/AddressString.h>
#include <quorl/foundation/Watch.h>
#include <quorl/values/ValuePoolReferer.h>
#include <tests/values/ValueTestTypes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

/// A pool: its name, its variables and the values that it remembers.
namespace Quorl
{
namespace
{

using QuorlTest::makeKey;
using QuorlTest::makeNumber;

RefPtr<ValuePool> makePool(const string& name)
{
    return RefPtr<ValuePool>(new ValuePool(name));
}

/// A value that does something when it ends.
class Ending final : public VValue<int>
{
public:
    explicit Ending(std::function<void()> act) : act_(std::move(act)) {}
    ~Ending() override { act_(); }

private:
    const std::function<void()> act_;
};

struct PoolNames final : ValuePool::iterator
{
    explicit PoolNames(int most) : left(most) {}
    bool apply(const string& name, const WeakPtr<ValuePool>&) override
    {
        seen.push_back(name);
        return --left > 0;
    }
    int left;
    std::vector<string> seen;
};

bool isSeen(const string& name)
{
    PoolNames names(1000);
    ValuePool::iterate(names);
    return std::find(names.seen.begin(), names.seen.end(), name) != names.seen.end();
}

TEST(ValuePool, OfOneNameHidesTheEarlierOneAndStaysWhenItEnds)
{
    const auto first = makePool("one name");
    {
        const auto second = makePool("one name");
        EXPECT_EQ(ValuePool::getValuePool("one name"), second);
    }
    const RefPtr<ValuePool> left = ValuePool::getValuePool("one name");

    EXPECT_FALSE(left);
    EXPECT_NE(left.referer, nullptr) << "dead, not null";
    EXPECT_FALSE(isSeen("one name"));
}

TEST(ValuePool, IsFoundUnderItsOldAndItsNewName)
{
    const auto pool = makePool("old name");
    EXPECT_TRUE(pool->setName("new name"));

    EXPECT_EQ(pool->name, "new name");
    EXPECT_EQ(ValuePool::getValuePool("old name"), pool);
    EXPECT_EQ(ValuePool::getValuePool("new name"), pool);
}

TEST(ValuePool, WithoutNameCannotBeFoundUntilItGetsOne)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    const string invalid = "[invalid:" + Tolmen::to_address_string(pool.referer) + "]";

    EXPECT_EQ(pool->name, invalid);
    EXPECT_EQ(ValuePool::getValuePool(invalid).referer, nullptr);
    EXPECT_FALSE(isSeen(invalid));
    pool->setName("named at last");
    EXPECT_TRUE(isSeen("named at last"));
}

TEST(ValuePool, IsVisitedByNameAndCountedIfTrue)
{
    const auto b = makePool("\x01 b");
    const auto a = makePool("\x01 a");
    PoolNames two(2);

    EXPECT_EQ(ValuePool::iterate(two), 1);
    EXPECT_EQ(two.seen, (std::vector<string>{"\x01 a", "\x01 b"}));
}

TEST(ValuePool, KeepsOneVariableForAKeyAndDropsTheFirst)
{
    const ValuePool pool;
    auto& changed = const_cast<ValuePool&>(pool);
    const auto key = makeKey(0);
    WeakPtr<VValueBase> first;
    {
        const auto value = makeNumber(1);
        first = value;
        changed.createVariable(key, value);
    }
    EXPECT_TRUE(first);
    changed.createVariable(key, makeNumber(2));

    EXPECT_FALSE(first);
    EXPECT_EQ(pool.findVariable(key)->Text(), "2");
    changed.removeVariable(key);
    changed.removeVariable(key);
    EXPECT_EQ(pool.findVariable(key).referer, nullptr);
}

TEST(ValuePool, SaysThatItsVariablesChange)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    const auto key = makeKey(0);
    auto before = Tolmen::Watch::variables();
    pool->createVariable(key, makeNumber(1));
    EXPECT_NE(Tolmen::Watch::variables(), before);
    before = Tolmen::Watch::variables();
    pool->removeVariable(key);
    EXPECT_NE(Tolmen::Watch::variables(), before);
}

TEST(ValuePool, BearsToBeChangedByTheEndOfAVariable)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    const auto key = makeKey(0);
    const auto other = makeKey(1);
    for (const bool isReplaced : {true, false})
    {
        pool->createVariable(key, RefPtr<VValueBase>(new Ending([&] {
                                 pool->removeVariable(key);
                                 pool->createVariable(other, makeNumber(7));
                             })));
        if (isReplaced)
            pool->createVariable(key, makeNumber(2));
        else
            pool->removeVariable(key);
        EXPECT_FALSE(pool->findVariable(key)) << isReplaced;
        EXPECT_EQ(pool->findVariable(other)->Text(), "7") << isReplaced;
        pool->removeVariable(other);
    }
}

TEST(ValuePool, HasNothingWhileItEnds)
{
    const auto key = makeKey(0);
    const auto other = makeKey(1);
    const auto value = makeNumber(4);
    int ended = 0;
    {
        ValuePool pool; // nobody owns it, so that it lives for handles to the very end
        const WeakPtr<ValuePool> weak(&pool);
        ASSERT_TRUE(pool.registerValue("named", value));
        pool.createVariable(key, RefPtr<VValueBase>(new Ending([&, weak] {
                                ++ended;
                                ASSERT_TRUE(weak);
                                EXPECT_FALSE(weak->findVariable(key));
                                EXPECT_FALSE(weak->retrieveValue("named"));
                                EXPECT_FALSE(weak->removeValue("named"));
                                weak->removeVariable(key);
                                weak->activate({}, {}, nullptr);
                                weak->createVariable(other, makeNumber(5));
                                EXPECT_EQ(weak->findVariable(other)->Text(), "5");
                            })));
    }
    EXPECT_EQ(ended, 1);
}

TEST(ValuePool, RemembersNamedValuesWithoutOwningThem)
{
    ValuePool pool;
    {
        const auto value = makeNumber(1);
        EXPECT_TRUE(pool.registerValue("v", value));
        EXPECT_EQ(pool.retrieveValue("v"), value);
    }
    const RefPtr<VValueBase> ended = pool.retrieveValue("v");

    EXPECT_FALSE(ended);
    EXPECT_NE(ended.referer, nullptr) << "dead, not null";
    EXPECT_TRUE(pool.removeValue("v"));
    EXPECT_TRUE(pool.removeValue("v"));
    EXPECT_EQ(pool.retrieveValue("v").referer, nullptr);
}

TEST(ValuePoolReferer, IsABaseToBeDestroyedThrough)
{
    struct Derived final : ValuePoolReferer
    {
        explicit Derived(bool& f) : flag(f) {}
        ~Derived() override { flag = true; }
        bool& flag;
    };
    bool isDestroyed = false;
    const ValuePoolReferer* const base = new Derived(isDestroyed);
    delete base;

    EXPECT_TRUE(isDestroyed);
}

} // namespace
} // namespace Quorl
