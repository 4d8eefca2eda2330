#include <quorl/foundation/LastKnownSourceCodeLine.h>
#include <quorl/registry/VAcceptList.h>
#include <tests/support/TestCreator.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>

namespace Quorl
{
namespace
{

using QuorlTest::Registered;
using QuorlTest::TestCreator;
using testing::ElementsAre;

RefPtr<VAcceptInfo> makeInfo(const string& name)
{
    return RefPtr<VAcceptInfo>(new VAcceptInfo(typeid(int), name));
}

/// Accepts anything, under the names that are given.
Registered<TestCreator> makeAcceptor(const string& key, int priority,
                                     const std::vector<string>& names, double weight = 1.0)
{
    auto* const creator = new TestCreator(key, priority);
    creator->whenOffered = [names, weight](const RefPtr<VObject>&) {
        VAcceptInfoList ways;
        for (const string& name : names) ways.push_back(makeInfo(name));
        return ways * weight;
    };
    return Registered<TestCreator>(creator);
}

std::vector<string> namesOf(const RefPtr<VAcceptList>& list)
{
    std::vector<string> names;
    if (list)
        for (const VAcception& acception : *list)
            names.push_back(acception.creator->getName() + ":" + acception.info->name);
    return names;
}

struct Acceptors : testing::Test
{
    Registered<VObject> object{new VObject("offered", 0, {})};
};

TEST_F(Acceptors, ADeadObjectHasNone)
{
    int asked = 0;
    const Registered creator(new TestCreator("Accept/Counting"));
    creator->whenOffered = [&](const RefPtr<VObject>&) {
        ++asked;
        return VAcceptInfoList();
    };
    auto* const direct = new VObject("ended", 0, {});
    const RefPtr<VObject> ended(direct);
    direct->VManagedObject::remove();
    delete direct;

    EXPECT_FALSE(VAcceptList::getAcceptors({}, INT_MIN, INT_MAX).referer);
    EXPECT_FALSE(VAcceptList::getAcceptors(ended, INT_MIN, INT_MAX).referer);
    EXPECT_EQ(asked, 0);
}

TEST_F(Acceptors, WithoutAnyThereIsNoListRatherThanAnEmptyOne)
{
    const Registered refusing = makeAcceptor("Accept/Refusing", 0, {});
    const Registered plain(new VInputCreatorBase("no creator of objects", 0, {}, nullptr));

    EXPECT_FALSE(VAcceptList::getAcceptors(object, INT_MIN, INT_MAX).referer);
}

TEST_F(Acceptors, ComeByAscendingPriorityWhateverTheirWeights)
{
    const Registered late = makeAcceptor("Accept/Late", 5, {"a", "b"}, 1.0);
    const Registered early = makeAcceptor("Accept/Early", -5, {"c"}, 0.5);
    const Registered same = makeAcceptor("Accept/Same", 5, {"d"}, 9.0);
    const RefPtr<VAcceptList> list = VAcceptList::getAcceptors(object, INT_MIN, INT_MAX);

    EXPECT_THAT(namesOf(list),
                ElementsAre("Accept/Early:c", "Accept/Late:a", "Accept/Late:b", "Accept/Same:d"));
}

TEST_F(Acceptors, StandInAHalfOpenRangeOfPriorities)
{
    const Registered low = makeAcceptor("Accept/Low", INT_MIN, {"l"});
    const Registered middle = makeAcceptor("Accept/Middle", 3, {"m"});
    const Registered high = makeAcceptor("Accept/High", INT_MAX, {"h"});

    EXPECT_THAT(namesOf(VAcceptList::getAcceptors(object)),
                ElementsAre("Accept/Low:l", "Accept/Middle:m"));
    EXPECT_THAT(namesOf(VAcceptList::getAcceptors(object, 3, 4)), ElementsAre("Accept/Middle:m"));
    EXPECT_FALSE(VAcceptList::getAcceptors(object, 4, 3).referer);
}

TEST_F(Acceptors, AreAskedForTheObjectItself)
{
    const Registered creator(new TestCreator("Accept/Asked"));
    RefPtr<VObject> seen;
    creator->whenOffered = [&](const RefPtr<VObject>& parent) {
        seen = parent;
        return VAcceptInfoList{makeInfo("x"), RefPtr<VAcceptInfo>()};
    };
    const RefPtr<VAcceptList> list = VAcceptList::getAcceptors(object);

    EXPECT_EQ(seen, object.handle());
    ASSERT_EQ(list->size(), 2U) << "a null record is handed on";
    EXPECT_FALSE(list->back().info);
}

TEST_F(Acceptors, LeaveATraceWhileTheyAreAskedAndNoneBehind)
{
    Tolmen::SetLastKnownSourceCodeLine("mine");
    const Registered creator(new TestCreator("Accept/Traced"));
    string line;
    creator->whenOffered = [&](const RefPtr<VObject>&) {
        line = Tolmen::getLastKnownSourceCodeLine();
        return VAcceptInfoList();
    };
    VAcceptList::getAcceptors(object);

    EXPECT_THAT(line, testing::MatchesRegex("quorl/registry/VAcceptList.cpp:[0-9]+"));
    EXPECT_STREQ(Tolmen::getLastKnownSourceCodeLine(), "mine");
    creator->whenOffered = [](const RefPtr<VObject>&) -> VAcceptInfoList { throw 1; };
    EXPECT_THROW(VAcceptList::getAcceptors(object), int);
    EXPECT_STREQ(Tolmen::getLastKnownSourceCodeLine(), "mine");
    Tolmen::SetLastKnownSourceCodeLine(nullptr);
}

TEST_F(Acceptors, MayRemoveThemselvesWhenTheyAreAsked)
{
    auto* const creator = new TestCreator("Accept/Leaving");
    creator->whenOffered = [creator](const RefPtr<VObject>&) {
        creator->VManagedObject::remove();
        return VAcceptInfoList{makeInfo("last words")};
    };
    const RefPtr<VAcceptList> list = VAcceptList::getAcceptors(object);

    EXPECT_THAT(namesOf(list), ElementsAre("Accept/Leaving:last words"));
}

TEST(VAcception, IsNullUnlessToldAndCopiesBothHandles)
{
    const VAcception none;
    EXPECT_FALSE(none.info.referer);
    EXPECT_FALSE(none.creator.referer);
    const Registered creator(new TestCreator("Accept/Copied"));
    const VAcception one(makeInfo("x"), creator.handle());
    const VAcception copied(one);
    EXPECT_EQ(copied.info, one.info);
    EXPECT_EQ(copied.creator, creator.handle());
}

TEST(VAcceptInfo, StartsWithWeightOne)
{
    const VAcceptInfo named(typeid(int), "out");
    EXPECT_EQ(named.type, &typeid(int));
    EXPECT_EQ(named.name, "out");
    EXPECT_EQ(named.weight, 1.0);
    EXPECT_FALSE(named.interface.referer);
    EXPECT_TRUE(named.names.empty());
    EXPECT_EQ(named.suffix, "");
    const VAcceptInfo unnamed(typeid(int), RefPtr<Tolmen::InterfaceBase>());
    EXPECT_EQ(unnamed.name, "");
}

TEST(VAcceptInfoList, OperatorsChangeTheSharedRecords)
{
    const VAcceptInfoList list{makeInfo("a"), makeInfo("b")};
    const VAcceptInfoList doubled = list * 2.0;
    const VAcceptInfoList named = (doubled & "x") & "y";

    EXPECT_EQ(doubled, list) << "the same handles";
    EXPECT_EQ(named, list);
    for (const RefPtr<VAcceptInfo>& info : list)
    {
        EXPECT_EQ(info->weight, 2.0);
        EXPECT_EQ(info->suffix, "xy");
    }
    EXPECT_TRUE((VAcceptInfoList() * 2.0).empty());
}

TEST(VAcceptInfoListDeathTest, ANullEntryIsAFault)
{
    const VAcceptInfoList list{RefPtr<VAcceptInfo>()};
    EXPECT_DEATH(list * 2.0, "");
    EXPECT_DEATH(list & "x", "");
}

TEST(AcceptanceTraces, DoNothing)
{
    VAcceptInfo::accept_info_check("x", typeid(int));
    VAcceptInfo::accept_info_check_yes("x", typeid(int));
    VAcceptInfo::accept_info_check_no("x", typeid(int));
    VAcceptListTracer::trace({}, {}, "x");
}

} // namespace
} // namespace Quorl
