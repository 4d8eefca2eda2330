#include <quorl/values/ValuePool.h>

#include <quorl/foundation/AddressString.h>
#include <quorl/foundation/VGlobals.h>
#include <quorl/values/VValue.h>
#include <quorl/values/ValueNotifierList.h>
#include <quorl/values/ValuePoolCreator.h>
#include <quorl/values/ValuePoolProvider.h>
#include <quorl/values/ValuePoolReferer.h>
#include <tests/support/Observer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::makeObserver;
using QuorlTest::Observer;

RefPtr<VValueBase> make(int datum)
{
    return RefPtr<VValueBase>(new VValue<int>(datum));
}

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

/// A list with a default value, such as a parameter is.
class Key final : public ValueNotifierList
{
public:
    explicit Key(int datum) : default_(make(datum)) { addNotifier(observer); }
    const RefPtr<VValueBase>& DefaultValue() const override { return default_; }

    RefPtr<Observer> observer = makeObserver();

private:
    RefPtr<VValueBase> default_;
};

RefPtr<Key> makeKey(int datum)
{
    return RefPtr<Key>(new Key(datum));
}

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
    makePool("ended before");

    EXPECT_FALSE(ValuePool::getValuePool("ended before"));
    EXPECT_EQ(maker->asked, 0);

    creators.erase(maker);
}

TEST(ValuePool, KeepsOneVariableForAKeyAndDropsTheFirst)
{
    const ValuePool pool;
    auto& changed = const_cast<ValuePool&>(pool);
    const auto key = makeKey(0);
    WeakPtr<VValueBase> first;
    {
        const auto value = make(1);
        first = value;
        changed.createVariable(key, value);
    }
    EXPECT_TRUE(first);
    changed.createVariable(key, make(2));

    EXPECT_FALSE(first);
    EXPECT_EQ(pool.findVariable(key)->Text(), "2");
    changed.removeVariable(key);
    changed.removeVariable(key);
    EXPECT_EQ(pool.findVariable(key).referer, nullptr);
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
                                 pool->createVariable(other, make(7));
                             })));
        if (isReplaced)
            pool->createVariable(key, make(2));
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
    const auto value = make(4);
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
                                weak->createVariable(other, make(5));
                                EXPECT_EQ(weak->findVariable(other)->Text(), "5");
                            })));
    }
    EXPECT_EQ(ended, 1);
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

TEST(ValuePool, RemembersNamedValuesWithoutOwningThem)
{
    ValuePool pool;
    {
        const auto value = make(1);
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

void activate(const RefPtr<ValuePool>& pool, const RefPtr<ValuePool>& old)
{
    pool->activate(old, WeakPtr<ValueNotifier>(), nullptr);
}

TEST(ValuePoolActivation, SendsNothingInPlaceOfItself)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    const auto key = makeKey(0);
    pool->createVariable(key, make(1));

    activate(pool, pool);

    EXPECT_TRUE(key->observer->calls.empty());
}

TEST(ValuePoolActivation, TellsItsOwnVariablesOnlyInPlaceOfNone)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    const auto key = makeKey(0);
    const auto other = makeKey(5);
    pool->createVariable(key, make(1));

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
    old->createVariable(onlyOld, make(11));
    old->createVariable(both, make(21));
    pool->createVariable(both, make(22));

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
    old->createVariable(key, make(11));

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
    old->createVariable(key, make(31));
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
        const auto value = make(1);
        left = value;
        old->createVariable(key, make(2));
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
    pool->createVariable(key, make(1));
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
        pool->createVariable(keys.back(), make(i));
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

TEST(ValuePoolProvider, PutsAPoolInUseBeforeItTellsTheParameters)
{
    const RefPtr<ValuePool> old(new ValuePool);
    const RefPtr<ValuePool> next(new ValuePool);
    const auto key = makeKey(1);
    old->createVariable(key, make(2));
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

TEST(ValuePoolActivation, SurvivesTheEndOfBothPoolsInTheCallOfAnObserver)
{
    RefPtr<ValuePool> old(new ValuePool);
    RefPtr<ValuePool> pool(new ValuePool);
    std::vector<RefPtr<Key>> keys{makeKey(10), makeKey(20), makeKey(30)};
    for (const auto& key : keys)
    {
        old->createVariable(key, make(1));
        key->observer->whenCalled = [&] {
            old = RefPtr<ValuePool>();
            pool = RefPtr<ValuePool>();
        };
    }
    activate(pool, old);
    for (const auto& key : keys) EXPECT_EQ(key->observer->calls.size(), 1U);

    pool = new ValuePool;
    for (const auto& key : keys) pool->createVariable(key, make(2));
    const WeakPtr<ValuePool> weak = pool;
    activate(pool, {});
    for (const auto& key : keys) EXPECT_EQ(key->observer->calls.size(), 2U);
    EXPECT_FALSE(weak);
}

} // namespace
} // namespace Quorl
