#include <quorl/objects/VObject.h>
#include <tests/support/Node.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <random>
#include <set>

namespace Quorl
{
namespace
{

using QuorlTest::makeParameter;
using QuorlTest::Node;
using testing::ElementsAre;
using testing::IsEmpty;

/// A type that no other test has outputs of.
struct Rare
{
};

/// Notes what it is shown, "object.slot".
struct Show final : VObject::OutputObjectIterator
{
    bool apply(const RefPtr<VObject>& object, const std::type_info& type,
               const RefPtr<VSlot>& slot) override
    {
        seen.push_back(object->getName() + "." + slot->Name);
        lastType = &type;
        if (whenSeen) whenSeen();
        return seen.size() < most;
    }
    std::vector<string> seen;
    const std::type_info* lastType = nullptr;
    std::size_t most = 1000000;
    std::function<void()> whenSeen;
};

struct ShowParents final : VObjectIterator
{
    bool apply(const RefPtr<VObject>& object, const std::type_info& type,
               const RefPtr<VSlot>& slot) override
    {
        seen.push_back(object->getName() + "." + slot->Name);
        lastType = &type;
        return seen.size() < most;
    }
    std::vector<string> seen;
    const std::type_info* lastType = nullptr;
    std::size_t most = 1000;
};

struct Neighbours : testing::Test
{
    /// An output under the rare type.
    static RefPtr<VParameter> rareOutput(const RefPtr<Node>& node, const string& name)
    {
        const RefPtr<VParameter> parameter = makeParameter(name);
        node->registerOutput(parameter, name, typeid(Rare), "");
        return parameter;
    }

    QuorlTest::Network network;
};

using FindOutputObjects = Neighbours;
using IterateParents = Neighbours;
using IterateChildren = Neighbours;

TEST_F(FindOutputObjects, ShowsAllOutputsOfATypeByPriority)
{
    const auto late = network.node("late");
    const auto early = network.node("early");
    early->setPriority(-1);
    rareOutput(late, "a");
    rareOutput(early, "b");
    rareOutput(late, "c");
    late->output("of another type");
    Show show;

    EXPECT_EQ(VObject::findOutputObjects(typeid(Rare), show), 3);
    EXPECT_THAT(show.seen, ElementsAre("early.b", "late.a", "late.c"));
    EXPECT_TRUE(*show.lastType == typeid(Rare));
}

TEST_F(FindOutputObjects, FalseEndsTheWholeWalkAndIsCounted)
{
    const auto first = network.node("first");
    rareOutput(first, "a");
    rareOutput(first, "b");
    rareOutput(network.node("second"), "c");
    Show two;
    two.most = 2;

    EXPECT_EQ(VObject::findOutputObjects(typeid(Rare), two), 2);
    EXPECT_THAT(two.seen, ElementsAre("first.a", "first.b"));
}

TEST_F(FindOutputObjects, SurvivesAVisitorThatRemovesAndMakesObjects)
{
    const auto first = network.node("first");
    const auto second = network.node("second");
    rareOutput(first, "a");
    rareOutput(second, "b");
    Show show;
    show.whenSeen = [&] {
        if (show.seen.size() > 1) return;
        first->VManagedObject::remove();
        second->VManagedObject::remove();
        rareOutput(network.node("third"), "c");
    };

    EXPECT_EQ(VObject::findOutputObjects(typeid(Rare), show), 2);
    EXPECT_THAT(show.seen, ElementsAre("first.a", "third.c"));
}

TEST_F(FindOutputObjects, DoesNotSeeTheHighestPriority)
{
    const auto hidden = network.node("hidden");
    hidden->setPriority(INT_MAX);
    rareOutput(hidden, "a");
    Show show;

    EXPECT_EQ(VObject::findOutputObjects(typeid(Rare), show), 0);
}

TEST_F(FindOutputObjects, UniqueMeansTheOnlyOne)
{
    EXPECT_FALSE(VObject::findUniqueOutputObject(typeid(Rare), {}, true).referer);
    EXPECT_FALSE(VObject::findUniqueOutputObject(typeid(Rare), {}, false).referer);
    const RefPtr<VParameter> only = rareOutput(network.node("only"), "a");
    EXPECT_EQ(VObject::findUniqueOutputObject(typeid(Rare), {}, true), only);
    rareOutput(network.node("other"), "b");
    EXPECT_FALSE(VObject::findUniqueOutputObject(typeid(Rare), {}, true).referer);
    EXPECT_EQ(VObject::findUniqueOutputObject(typeid(Rare), {}, false), only);
}

TEST_F(IterateParents, VisitsTheObjectBehindEachInputUpToALevel)
{
    const auto a = network.node("a");
    const auto b = network.node("b");
    const auto child = network.node("child");
    network.connect(a, child, "x", 0);
    network.connect(b, child, "y", 1);
    network.connect(a, child, "z", 1);
    network.connect(b, child, "far", 5);
    child->input("own", -1);
    child->addSlot(new VSlot(child.rawptr(), {}, "empty", ""), 0, false);
    ShowParents all;
    child->iterateParents(all, INT_MAX);
    EXPECT_THAT(all.seen, ElementsAre("a.x", "b.y", "a.z", "b.far"));
    EXPECT_TRUE(*all.lastType == typeid(double));

    ShowParents basic;
    child->iterateParents(basic, 1);
    EXPECT_THAT(basic.seen, ElementsAre("a.x", "b.y", "a.z"));
    ShowParents none;
    child->iterateParents(none, -1);
    EXPECT_THAT(none.seen, IsEmpty());
    ShowParents two;
    two.most = 2;
    child->iterateParents(two, INT_MAX);
    EXPECT_EQ(two.seen.size(), 2U);
}

TEST_F(IterateParents, PassesOverSourcesThatHaveEnded)
{
    const auto child = network.node("child");
    auto* const parent = new Node("short-lived");
    child->input("x")->attachSource(parent->output("out"));
    parent->VManagedObject::remove();
    ShowParents all;
    child->iterateParents(all, INT_MAX);

    EXPECT_THAT(all.seen, IsEmpty());
}

TEST_F(IterateChildren, VisitsWhoShowsItsOutputsButNotItself)
{
    const auto parent = network.node("parent");
    const auto one = network.node("one");
    const auto two = network.node("two");
    const RefPtr<VParameter> output = parent->output("out");
    const RefPtr<VParameter> other = parent->output("other");
    one->input("x", 3)->attachSource(output);
    one->input("a", 5)->attachSource(output); // the first by level is shown
    two->input("y")->attachSource(output);
    two->input("z")->attachSource(other);
    parent->input("loop")->attachSource(output);
    network.node("stranger")->input("x");
    Show show;

    EXPECT_EQ(parent->iterateChildren(show), 2) << "outputs, not visits";
    EXPECT_THAT(show.seen, ElementsAre("one.x", "two.y", "two.z"));
    EXPECT_TRUE(*show.lastType == typeid(double));
}

TEST_F(IterateChildren, FalseEndsTheWholeWalk)
{
    const auto parent = network.node("parent");
    const auto child = network.node("child");
    child->input("x")->attachSource(parent->output("a"));
    child->input("y")->attachSource(parent->output("b"));
    parent->output("c");
    Show one;
    one.most = 1;

    EXPECT_EQ(parent->iterateChildren(one), 1);
    EXPECT_THAT(one.seen, ElementsAre("child.x"));
}

TEST_F(IterateChildren, AnEmptyOutputHasNone)
{
    const auto parent = network.node("parent");
    const auto child = network.node("child");
    child->addSlot(new VSlot(child.rawptr(), {}, "empty", ""), 0, false);
    parent->output("out");
    parent->getOutput("out")->assignParameter({}, "");
    Show show;

    EXPECT_EQ(parent->iterateChildren(show), 1);
    EXPECT_THAT(show.seen, IsEmpty());
}

/// Random networks against a list of who is plugged into whom.
TEST_F(Neighbours, AgreeWithAListOfConnections)
{
    const auto seed = std::random_device()();
    std::mt19937 random(seed);
    std::vector<RefPtr<Node>> nodes;
    std::vector<RefPtr<VParameter>> outputs;
    for (int number = 0; number < 12; ++number)
    {
        nodes.push_back(network.node("n" + std::to_string(number)));
        outputs.push_back(nodes.back()->output("out"));
        for (const char* name : {"a", "b", "c"}) nodes.back()->input(name);
    }
    std::map<std::pair<std::size_t, string>, std::size_t> wires; // (child, input) -> parent
    for (int step = 0; step < 200; ++step)
    {
        const std::size_t child = random() % nodes.size();
        const std::size_t parent = random() % nodes.size();
        const string input(1, static_cast<char>('a' + random() % 3));
        ASSERT_EQ(nodes[child]->attach(input, *nodes[parent], "out"),
                  VSlotContainer::AttachToOutput);
        wires[{child, input}] = parent;

        std::vector<string> expectedParents;
        std::set<std::size_t> expectedChildren;
        for (const auto& [place, from] : wires)
        {
            if (place.first == child)
                expectedParents.push_back(nodes[from]->getName() + "." + place.second);
            if (from == parent && place.first != parent) expectedChildren.insert(place.first);
        }
        ShowParents parents;
        nodes[child]->iterateParents(parents, INT_MAX);
        EXPECT_EQ(parents.seen, expectedParents) << "seed " << seed;
        Show children;
        nodes[parent]->iterateChildren(children);
        EXPECT_EQ(children.seen.size(), expectedChildren.size()) << "seed " << seed;
    }
}

} // namespace
} // namespace Quorl
