#include <quorl/values/ValueCache.h>

#include <quorl/slots/VSlotContainer.h>
#include <quorl/slots/VValueParameter.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <functional>

namespace Quorl
{
namespace
{

using QuorlTest::makePool;
using QuorlTest::Network;

struct Cached : testing::Test
{
    bool hasChanged() const { return cache->hasChanged(object, pool); }
    void set(const string& text)
    {
        slot->Parameter->setValueFromText(text, pool, "", true, {}, nullptr, nullptr);
    }

    Network network;
    RefPtr<QuorlTest::Node> object = network.node("object");
    RefPtr<VSlot> slot = object->input("x");
    RefPtr<ValuePool> pool = makePool();
    RefPtr<ValueCache> cache{new ValueCache};
};

using ValueCacheTest = Cached;

TEST_F(ValueCacheTest, HasNotChangedWhileEmpty)
{
    EXPECT_FALSE(hasChanged());
}

TEST_F(ValueCacheTest, ChangesWithADatumAndNotWithATouch)
{
    cache->consider(slot, pool);
    slot->Parameter->touchValue(pool);
    EXPECT_FALSE(hasChanged());
    set("5");
    EXPECT_TRUE(hasChanged());
    cache->consider(slot, pool);
    EXPECT_FALSE(hasChanged());
}

TEST_F(ValueCacheTest, CountsASlotWithoutValueAsChangedForAnyContainer)
{
    const auto other = network.node("other");
    const RefPtr<VParameter> parameter = slot->Parameter;
    slot->assignParameter({}, "");
    cache->consider(slot, pool);
    EXPECT_TRUE(hasChanged());
    EXPECT_TRUE(cache->hasChanged(other, pool));
    slot->assignParameter(parameter, "");
    EXPECT_TRUE(hasChanged()) << "until it is considered anew";
    cache->consider(slot, pool);
    EXPECT_FALSE(hasChanged());
}

TEST_F(ValueCacheTest, CountsALostValueAsChanged)
{
    cache->consider(slot, pool);
    slot->assignParameter({}, "");

    EXPECT_TRUE(hasChanged());
}

TEST_F(ValueCacheTest, GoesOnPastAValueThatIsDeadButNotNull)
{
    cache->consider(slot, pool);
    slot->Parameter->local = false;
    VValueBase* const value = slot->Parameter->defaultValue.rawptr();
    delete value;
    EXPECT_NE(slot->getValueBase(pool).referer, nullptr);

    EXPECT_FALSE(hasChanged());
    cache->consider(slot, pool);
    EXPECT_TRUE(hasChanged()) << "considered without a value";
}

TEST_F(ValueCacheTest, LooksAtTheSlotsOfOneContainer)
{
    const auto other = network.node("other");
    cache->consider(slot, pool);
    set("5");

    EXPECT_FALSE(cache->hasChanged(other, pool));
    EXPECT_TRUE(hasChanged());
}

TEST_F(ValueCacheTest, PassesOverSlotsThatHaveEnded)
{
    cache->consider(slot, pool);
    set("5");
    const WeakPtr<VSlot> dead = slot;
    slot = RefPtr<VSlot>();
    object->removeParameter("x");
    cache->consider(dead, pool);

    EXPECT_FALSE(hasChanged());
    EXPECT_EQ(cache->size(), 1U);
}

TEST_F(ValueCacheTest, SitsInACubeThatGetsOneWhenAsked)
{
    Tolmen::Intercube cube;
    EXPECT_FALSE(ValueCache::hasChanged(object, cube, pool)) << "there is none";
    EXPECT_FALSE(object->hasChangedSlots(cube, pool));

    ValueCache* const made = ValueCache::getValueCache(cube);
    EXPECT_EQ(ValueCache::getValueCache(cube), made);
    made->consider(slot, pool);
    set("5");

    EXPECT_TRUE(ValueCache::hasChanged(object, cube, pool));
    EXPECT_TRUE(object->hasChangedSlots(cube, pool));
}

TEST_F(ValueCacheTest, SurvivesAComparisonThatConsidersAnew)
{
    struct Considering final : VValue<double>
    {
        RefPtr<VValueBase> copy() const override
        {
            const RefPtr<Considering> copied(new Considering);
            copied->whenCompared = whenCompared;
            return copied;
        }
        bool isDifferentFrom(const WeakPtr<VValueBase>& other) const override
        {
            whenCompared();
            return VValue<double>::isDifferentFrom(other);
        }
        std::function<void()> whenCompared;
    };
    const RefPtr<Considering> value(new Considering);
    value->whenCompared = [&] { cache->consider(slot, pool); };
    slot->assignParameter(RefPtr<VParameter>(new VValueParameter<double>(value, "p")), "");
    cache->consider(slot, pool);

    EXPECT_FALSE(hasChanged());
}

} // namespace
} // namespace Quorl
