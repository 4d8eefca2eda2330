#include <quorl/registry/VManagedObject.h>

#include <quorl/foundation/SpeakPtr.h>
#include <tests/registry/TestDomain.h>
#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <functional>

/// Walks over the objects of a domain, which may be changed meanwhile.
namespace Quorl
{
namespace
{

using QuorlTest::Domain;
using QuorlTest::errorOutputOf;
using QuorlTest::Names;
using QuorlTest::ObjectVisit;
using QuorlTest::outputOf;
using QuorlTest::traverse;

TEST(VManagedObjectTraverse, GoesByPriorityThenByInsertionInAHalfOpenRange)
{
    struct Tag;
    Domain<Tag> domain;
    domain.add("b", 2);
    domain.add("a", 2);
    domain.add("low", -5);
    domain.add("high", 9);

    EXPECT_EQ(traverse<Tag>(), (Names{"low-5", "b2", "a2", "high9"}));
    EXPECT_EQ(traverse<Tag>(2, 9), (Names{"b2", "a2"}));
    EXPECT_EQ(traverse<Tag>(2, 2), Names{});
    EXPECT_EQ(traverse<Tag>(9, 2), Names{});
    EXPECT_EQ(traverse<Tag>(3, 10), Names{"high9"});
}

TEST(VManagedObjectTraverse, DoesNotCountTheVisitThatStoppedIt)
{
    struct Tag;
    Domain<Tag> domain;
    for (const char* name : {"a", "b", "c"}) domain.add(name);
    ObjectVisit visit;
    visit.between = [](const string& name) { return name != "b"; };

    EXPECT_EQ(VManagedObject::traverse(domain.type(), visit), 1);
    EXPECT_EQ(visit.seen.size(), 2U);
}

TEST(VManagedObjectTraverse, SurvivesVisitorsThatRemoveAndInsert)
{
    struct Tag;
    Domain<Tag> domain;
    for (const char* name : {"a", "b", "c", "d"}) domain.add(name);
    ObjectVisit visit;
    visit.between = [&](const string& name) {
        if (name == "a")
        {
            VManagedObject::remove(domain.type(), "a"); // where the walk stands
            VManagedObject::remove(domain.type(), "b"); // where it would go next
            domain.add("e");
        }
        if (name == "e") VManagedObject::remove(domain.type(), "e");
        return true;
    };

    EXPECT_EQ(VManagedObject::traverse(domain.type(), visit), 4);
    EXPECT_EQ(visit.seen, (Names{"a0", "c0", "d0", "e0"}));
}

TEST(VManagedObjectTraverse, ReachesWhatIsAddedRightBehindALineThatWasRemoved)
{
    struct Tag;
    Domain<Tag> domain;
    for (const char* name : {"before", "a", "b"}) domain.add(name);
    domain.add("last", 9);
    ObjectVisit visit;
    visit.between = [&](const string& name) {
        if (name != "a") return true;
        VManagedObject::remove(domain.type(), "a");
        VManagedObject::remove(domain.type(), "b");
        domain.add("higher", 5);
        domain.add("equal", 0);
        domain.add("lower", -1);
        VManagedObject::remove(domain.type(), "before");
        return true;
    };

    VManagedObject::traverse(domain.type(), visit);

    EXPECT_EQ(visit.seen, (Names{"before0", "a0", "equal0", "higher5", "last9"}));
}

TEST(VManagedObjectTraverse, PassesOverWhatIsAddedBeforeTheLineThatWasRemoved)
{
    struct Tag;
    Domain<Tag> domain;
    domain.add("a", 5);
    domain.add("b", 7);
    ObjectVisit visit;
    visit.between = [&](const string& name) {
        if (name != "a") return true;
        VManagedObject::remove(domain.type(), "a");
        domain.add("lower", 4);
        return true;
    };

    EXPECT_EQ(VManagedObject::traverse(domain.type(), visit), 2);
    EXPECT_EQ(visit.seen, (Names{"a5", "b7"}));
}

TEST(VManagedObjectTraverse, ReachesTheSuccessorOfTheOnlyObject)
{
    struct Tag;
    Domain<Tag> domain;
    domain.add("a");
    ObjectVisit visit;
    visit.between = [&](const string& name) {
        if (name != "a") return true;
        VManagedObject::remove(domain.type(), "a");
        domain.add("b");
        return true;
    };

    EXPECT_EQ(VManagedObject::traverse(domain.type(), visit), 2);
    EXPECT_EQ(visit.seen, (Names{"a0", "b0"}));
}

TEST(VManagedObjectTraverse, CountsWalksUnderWay)
{
    struct Tag;
    Domain<Tag> domain;
    domain.add("a");
    ObjectVisit outer;
    int walks = 0;
    outer.between = [&](const string&) {
        traverse<Tag>();
        walks = VCreators(domain.type())->value();
        return true;
    };
    VManagedObject::traverse(domain.type(), outer);

    EXPECT_EQ(walks, 1);
    EXPECT_EQ(VCreators(domain.type())->value(), 0);
}

TEST(VManagedObjectTraverse, TakesAFunctionAndRestoresTheCountIfThatIsEmpty)
{
    struct Tag;
    Domain<Tag> domain;
    const std::function<bool(int, const RefPtr<VManagedObject>&, const string&)> empty;
    EXPECT_EQ(VManagedObject::iterate(domain.type(), empty), 0) << "there is nothing to visit";
    domain.add("a", 3);
    Names seen;

    EXPECT_EQ(VManagedObject::iterate(
                  domain.type(),
                  [&](int priority, const RefPtr<VManagedObject>&, const string& name) {
                      seen.push_back(name + std::to_string(priority));
                      return true;
                  },
                  3, 4),
              1);
    EXPECT_EQ(seen, Names{"a3"});
    EXPECT_THROW(VManagedObject::iterate(domain.type(), empty), std::bad_function_call);
    EXPECT_EQ(VCreators(domain.type())->value(), 0);
}

TEST(VManagedObjectTraverse, SaysThatAnObjectIsOwnedByNobody)
{
    struct Tag;
    Domain<Tag> domain;
    const auto object = domain.add("a");
    object.referer->strong = 0;
    string said;

    const string text = outputOf([&] {
        said = errorOutputOf([&] {
            ObjectVisit visit;
            object.referer->strong = 0;
            VManagedObject::traverse(domain.type(), visit);
        });
    });

    EXPECT_EQ(text, "VManagedObject::traverse(): a []\n");
    EXPECT_NE(said.find("VInfo->getCreator()"), string::npos);
}

} // namespace
} // namespace Quorl
