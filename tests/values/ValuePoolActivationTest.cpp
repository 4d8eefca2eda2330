#include <quorl/values/ValuePool.h>

#include <quorl/values/ValuePoolProvider.h>
#include <tests/values/ValueTestTypes.h>

#include <gtest/gtest.h>

#include <vector>

/// A pool that is used in place of another: which parameters are told what.
namespace Quorl
{
namespace
{

using QuorlTest::Key;
using QuorlTest::makeKey;
using QuorlTest::makeNumber;
using QuorlTest::makeObserver;

void activate(const RefPtr<ValuePool>& pool, const RefPtr<ValuePool>& old)
{
    pool->activate(old, WeakPtr<ValueNotifier>(), nullptr);
}

TEST(ValuePoolActivation, SendsNothingInPlaceOfItself)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    const auto key = makeKey(0);
    pool->createVariable(key, makeNumber(1));

    activate(pool, pool);

    EXPECT_TRUE(key->observer->calls.empty());
}

TEST(ValuePoolActivation, TellsItsOwnVariablesOnlyInPlaceOfNone)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    const auto key = makeKey(0);
    const auto other = makeKey(5);
    pool->createVariable(key, makeNumber(1));

    activate(pool, RefPtr<ValuePool>());

    ASSERT_EQ(key->observer->calls.size(), 1U);
    EXPECT_EQ(key->observer->calls[0].text, "1");
    EXPECT_EQ(key->observer->calls[0].pool, pool);
    EXPECT_EQ(key->observer->calls[0].caller, key.rawptr());
    EXPECT_TRUE(other->observer->calls.empty());
}

TEST(ValuePoolActivation, LetsWhatOnlyTheOldPoolHadFallBackToItsDefault)
{
    const RefPtr<ValuePool> old(new ValuePool);
    const RefPtr<ValuePool> pool(new ValuePool);
    const auto onlyOld = makeKey(10);
    const auto both = makeKey(20);
    old->createVariable(onlyOld, makeNumber(11));
    old->createVariable(both, makeNumber(21));
    pool->createVariable(both, makeNumber(22));

    activate(pool, old);

    ASSERT_EQ(onlyOld->observer->calls.size(), 1U);
    EXPECT_EQ(onlyOld->observer->calls[0].text, "10");
    EXPECT_FALSE(onlyOld->observer->calls[0].pool);
    ASSERT_EQ(both->observer->calls.size(), 1U);
    EXPECT_EQ(both->observer->calls[0].text, "22");
    EXPECT_EQ(pool->findVariable(onlyOld).referer, nullptr) << "nothing is copied";
}

TEST(ValuePoolActivation, SurvivesTheEndOfAParameterInTheCallOfItsObserver)
{
    const RefPtr<ValuePool> old(new ValuePool);
    const RefPtr<ValuePool> pool(new ValuePool);
    RefPtr<Key> key = makeKey(10);
    const auto first = makeObserver();
    const auto second = makeObserver();
    key->addNotifier(first);
    key->addNotifier(second);
    first->whenCalled = [&] { key = RefPtr<Key>(); };
    old->createVariable(key, makeNumber(11));

    activate(pool, old);

    EXPECT_FALSE(key);
    ASSERT_EQ(second->calls.size(), 1U);
    EXPECT_EQ(second->calls[0].text, "10");
}

TEST(ValuePoolActivation, TellsAKeyWithADeadVariableTwice)
{
    const RefPtr<ValuePool> old(new ValuePool);
    const RefPtr<ValuePool> pool(new ValuePool);
    const auto key = makeKey(30);
    old->createVariable(key, makeNumber(31));
    pool->createVariable(key, RefPtr<VValueBase>());

    activate(pool, old);

    ASSERT_EQ(key->observer->calls.size(), 2U);
    EXPECT_EQ(key->observer->calls[0].text, "30");
    EXPECT_EQ(key->observer->calls[1].text, "null");
}

TEST(ValuePoolActivation, PassesOverParametersThatHaveEnded)
{
    const RefPtr<ValuePool> old(new ValuePool);
    RefPtr<ValuePool> pool(new ValuePool);
    WeakPtr<VValueBase> left;
    {
        const auto key = makeKey(0);
        const auto value = makeNumber(1);
        left = value;
        old->createVariable(key, makeNumber(2));
        pool->createVariable(key, value);
    }

    activate(pool, old);

    EXPECT_TRUE(left) << "freed with the pool, not with the parameter";
    pool = RefPtr<ValuePool>();
    EXPECT_FALSE(left);
}

TEST(ValuePoolActivation, SkipsTheOneWhoAsked)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    const auto key = makeKey(0);
    pool->createVariable(key, makeNumber(1));
    const ValueMap changes;
    const auto second = makeObserver();
    key->addNotifier(second);

    pool->activate(RefPtr<ValuePool>(), key->observer, &changes);

    EXPECT_TRUE(key->observer->calls.empty());
    ASSERT_EQ(second->calls.size(), 1U);
    EXPECT_EQ(second->calls[0].changes, &changes);
}

TEST(ValuePoolActivation, LetsObserversChangeThePoolMeanwhile)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    std::vector<RefPtr<Key>> keys;
    for (int i = 0; i < 8; ++i)
    {
        keys.push_back(makeKey(i));
        pool->createVariable(keys.back(), makeNumber(i));
    }
    std::size_t told = 0;
    for (const auto& key : keys)
        key->observer->whenCalled = [&] {
            ++told;
            for (const auto& each : keys) pool->removeVariable(each);
        };

    activate(pool, RefPtr<ValuePool>());

    EXPECT_EQ(told, 1U);
}

TEST(ValuePoolActivation, SurvivesTheEndOfBothPoolsInTheCallOfAnObserver)
{
    RefPtr<ValuePool> old(new ValuePool);
    RefPtr<ValuePool> pool(new ValuePool);
    std::vector<RefPtr<Key>> keys{makeKey(10), makeKey(20), makeKey(30)};
    for (const auto& key : keys)
    {
        old->createVariable(key, makeNumber(1));
        key->observer->whenCalled = [&] {
            old = RefPtr<ValuePool>();
            pool = RefPtr<ValuePool>();
        };
    }
    activate(pool, old);
    for (const auto& key : keys) EXPECT_EQ(key->observer->calls.size(), 1U);

    pool = new ValuePool;
    for (const auto& key : keys) pool->createVariable(key, makeNumber(2));
    const WeakPtr<ValuePool> weak = pool;
    activate(pool, {});
    for (const auto& key : keys) EXPECT_EQ(key->observer->calls.size(), 2U);
    EXPECT_FALSE(weak);
}

TEST(ValuePoolProvider, PutsAPoolInUseBeforeItTellsTheParameters)
{
    const RefPtr<ValuePool> old(new ValuePool);
    const RefPtr<ValuePool> next(new ValuePool);
    const auto key = makeKey(1);
    old->createVariable(key, makeNumber(2));
    ValuePoolProvider provider(old);
    bool wasInUse = false;
    key->observer->whenCalled = [&] { wasInUse = provider.pool == next; };

    provider.activate(next);

    EXPECT_TRUE(wasInUse);
    EXPECT_EQ(key->observer->calls.at(0).text, "1");
    provider.activate(next);
    EXPECT_EQ(key->observer->calls.size(), 1U);
}

TEST(ValuePoolProvider, HasNoPoolAtFirst)
{
    EXPECT_FALSE(ValuePoolProvider().pool);
}

} // namespace
} // namespace Quorl
