#include <quorl/values/ValueMap.h>

#include <quorl/values/VValue.h>
#include <tests/support/Ending.h>

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

namespace Quorl
{
namespace
{

RefPtr<VValue<int>> make(int datum)
{
    return RefPtr<VValue<int>>(new VValue<int>(datum));
}

/// Kept alive by handles, then destroyed behind their backs.
RefPtr<VValueBase> makeDead()
{
    auto* const value = new VValue<int>(0);
    const RefPtr<VValueBase> handle(value);
    delete value;
    return handle;
}

class JoiningValue final : public VValue<int>
{
public:
    using VValue<int>::VValue;
    bool setContainerValue(const WeakPtr<VValueBase>&) override { return true; }
    RefPtr<VValueBase> copy() const override { return RefPtr<VValueBase>(new JoiningValue(*this)); }
};

struct Names final : ValueMap::iterator
{
    explicit Names(int most) : left(most) {}

    bool apply(const string& name, const RefPtr<VValueBase>&) override
    {
        seen.push_back(name);
        return --left > 0;
    }

    int left;
    std::vector<string> seen;
};

TEST(ValueMap, IsEmptyAtFirst)
{
    const ValueMap map;
    ValueMap::iterator anything;

    EXPECT_FALSE(map.getValue("x"));
    EXPECT_EQ(map.iterate(anything), 0);
    EXPECT_EQ(map.nComponents(), 0U);
}

TEST(ValueMap, SharesWhatIsSetAndReplacesIt)
{
    ValueMap map;
    const auto first = make(1);
    map.setValue("x", first);
    EXPECT_EQ(map.getValue("x"), first);
    map.setValue("x", make(2));

    EXPECT_EQ(map.getValue("x")->Text(), "2");
    EXPECT_EQ(map.nComponents(), 1U);
}

TEST(ValueMap, CopiesValuesSoThatTheCopyIsIndependent)
{
    ValueMap map;
    map.setValue("x", make(1));
    const ValueMap copied(map);
    ValueMap assigned;
    assigned.setValue("old", make(9));
    assigned = map;

    copied.getValue("x")->setValueFromText("2");
    assigned.getValue("x")->setValueFromText("3");

    EXPECT_EQ(map.getValue("x")->Text(), "1");
    EXPECT_FALSE(assigned.getValue("old"));
}

TEST(ValueMap, LeavesTheDeadOutOfACopy)
{
    ValueMap map;
    map.setValue("dead", makeDead());
    map.setValue("live", make(1));

    EXPECT_EQ(map.nComponents(), 2U);
    EXPECT_EQ(ValueMap(map).nComponents(), 1U);
}

TEST(ValueMap, KeepsItselfWhenAssignedToItself)
{
    ValueMap map;
    const auto value = make(1);
    map.setValue("x", value);
    const ValueMap& same = map;
    map = same;

    EXPECT_EQ(map.getValue("x"), value);
}

TEST(ValueMap, VisitsByNameUntilFalseAndCountsTheTrueAnswers)
{
    ValueMap map;
    for (const char* name : {"c", "a", "b"}) map.setValue(name, make(1));
    map.setValue("d", makeDead());
    Names all(10);
    Names two(2);

    EXPECT_EQ(map.iterate(all), 4);
    EXPECT_EQ(all.seen, (std::vector<string>{"a", "b", "c", "d"}));
    EXPECT_EQ(map.iterate(two), 1);
    EXPECT_EQ(two.seen.size(), 2U);
}

/// Does something at each entry, and notes what it was shown.
struct Busy final : ValueMap::iterator
{
    explicit Busy(std::function<void(const string&)> atEach) : act(std::move(atEach)) {}

    bool apply(const string& name, const RefPtr<VValueBase>& value) override
    {
        act(name);
        seen += name + value->Text();
        return true;
    }

    const std::function<void(const string&)> act;
    string seen;
};

TEST(ValueMap, KeepsAnEntryForTheVisitThatReplacesIt)
{
    ValueMap map;
    for (const char* name : {"a", "b"}) map.setValue(name, make(1));
    Busy empty([&](const string& name) { map.setValue(name, RefPtr<VValueBase>()); });

    EXPECT_EQ(map.iterate(empty), 2);
    EXPECT_EQ(empty.seen, "a1b1");
}

TEST(ValueMap, MayBeChangedAndAssignedInAVisit)
{
    ValueMap map;
    for (const char* name : {"a", "c"}) map.setValue(name, make(1));
    Busy add([&](const string& name) {
        if (name == "a") map.setValue("b", make(2));
    });
    EXPECT_EQ(map.iterate(add), 3);
    EXPECT_EQ(add.seen, "a1b2c1");

    ValueMap other;
    other.setValue("a", make(3));
    other.setValue("d", make(4));
    Busy assign([&](const string&) { map = other; });
    EXPECT_EQ(map.iterate(assign), 2);
    EXPECT_EQ(assign.seen, "a1d4");

    Busy clear([&](const string&) { map = ValueMap(); });
    EXPECT_EQ(map.iterate(clear), 1);
    EXPECT_EQ(clear.seen, "a3");
    EXPECT_EQ(map.nComponents(), 0U);
}

TEST(ValueMap, CopiesTheComponentsThatJoinTheContainer)
{
    ValueMap source;
    source.setValue("joins", RefPtr<VValueBase>(new JoiningValue(1)));
    source.setValue("refuses", make(2));
    source.setValue("dead", makeDead());
    const auto container = make(0);
    ValueMap target;
    target.setValue("old", make(3));

    EXPECT_TRUE(target.copyComponents(source, container));

    EXPECT_EQ(target.nComponents(), 1U);
    EXPECT_EQ(target.getValue("joins")->Text(), "1");
    EXPECT_FALSE(target.getValue("joins") == source.getValue("joins"));
}

TEST(ValueMap, IsEmptiedByCopyingTheComponentsOfNobody)
{
    ValueMap source;
    source.setValue("joins", RefPtr<VValueBase>(new JoiningValue(1)));
    ValueMap target;
    target.setValue("old", make(3));

    target.copyComponents(source, WeakPtr<VValueBase>());

    EXPECT_EQ(target.nComponents(), 0U);
}

TEST(ValueMap, IsEmptiedByCopyingItsOwnComponents)
{
    ValueMap map;
    map.setValue("joins", RefPtr<VValueBase>(new JoiningValue(1)));
    const auto container = make(0);

    EXPECT_TRUE(map.copyComponents(map, container));
    EXPECT_EQ(map.nComponents(), 0U);
}

TEST(ValueMap, LosesItsOldComponentsBeforeItTakesNewOnes)
{
    struct Looking final : VValue<int>
    {
        explicit Looking(const ValueMap& m) : map(m) {}
        bool setContainerValue(const WeakPtr<VValueBase>&) override { return !map.getValue("old"); }
        RefPtr<VValueBase> copy() const override { return RefPtr<VValueBase>(new Looking(map)); }
        const ValueMap& map;
    };
    ValueMap target;
    target.setValue("old", make(3));
    ValueMap source;
    source.setValue("looks", RefPtr<VValueBase>(new Looking(target)));

    target.copyComponents(source, make(0));

    EXPECT_TRUE(target.getValue("looks"));
}

TEST(ValueMap, HoldsAValueWhosePredecessorEmptiesIt)
{
    ValueMap map;
    {
        const RefPtr<QuorlTest::Ending<VValue<int>>> value(new QuorlTest::Ending<VValue<int>>(1));
        value->whenEnded = [&] { map = ValueMap(); };
        map.setValue("x", value);
    }

    map.setValue("x", make(2));

    EXPECT_EQ(map.nComponents(), 0U) << "the former one has ended last";
}

TEST(ValueMap, IsCopiedAsFarAsItIsThere)
{
    struct Emptying final : VValue<int>
    {
        explicit Emptying(ValueMap& map) : map_(map) {}
        RefPtr<VValueBase> copy() const override
        {
            map_ = ValueMap();
            return make(1);
        }
        bool setContainerValue(const WeakPtr<VValueBase>&) override { return true; }

    private:
        ValueMap& map_;
    };
    const RefPtr<VValueBase> whole = make(0);
    for (const bool areParts : {false, true})
    {
        ValueMap map;
        map.setValue("a", RefPtr<VValueBase>(new Emptying(map)));
        map.setValue("b", make(2));
        ValueMap copied;
        if (areParts)
            EXPECT_TRUE(copied.copyComponents(map, whole));
        else
            copied = map;
        EXPECT_EQ(copied.nComponents(), areParts ? 0U : 1U) << "what was emptied is no part";
        EXPECT_EQ(map.nComponents(), 0U);
    }
}

} // namespace
} // namespace Quorl
