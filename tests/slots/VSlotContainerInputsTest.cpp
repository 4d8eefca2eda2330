#include <quorl/slots/VSlotContainer.h>

#include <quorl/foundation/Watch.h>
#include <quorl/services/Vprintf.h>
#include <quorl/slots/VSlotTables.h>
#include <tests/slots/ContainerTestTypes.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Objection.h>

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

/// The inputs of a container: how they are entered, found, visited, moved to other levels and given
/// parameters of their own.
namespace Quorl
{
namespace
{

using QuorlTest::errorOutputOf;
using QuorlTest::makeParameter;
using QuorlTest::makeSlot;
using QuorlTest::Network;
using QuorlTest::Objection;
using QuorlTest::outputOf;
using QuorlTest::SlotVisit;
using QuorlTest::ticksOf;

using VSlotContainerInputs = QuorlTest::ContainerTest;

constexpr int kAllLevels = VSlotContainer::kAllLevels;

TEST_F(VSlotContainerInputs, AreEnteredWithANewConnectionAge)
{
    const auto slot = makeSlot(object.rawptr(), "x");

    EXPECT_EQ(ticksOf([&] { EXPECT_EQ(object->addSlot(slot, 0, false), slot); }), 1);
    EXPECT_EQ(object->ConnectionAge(), Ageable::GlobalTime);
    EXPECT_EQ(ticksOf([&] { EXPECT_FALSE(object->addSlot({}, 0, false)); }), 0);
    EXPECT_FALSE(addSlot(nullptr, slot, 0, false));
    EXPECT_FALSE(addSlot(object.rawptr(), {}, 0, false));
    EXPECT_FALSE(object->addParameter("y", 0, {}, false));
}

TEST_F(VSlotContainerInputs, AreRefusedUnderATakenNameWhichCountsAsAChangeToo)
{
    const auto first = object->input("x");

    EXPECT_EQ(
        ticksOf([&] { EXPECT_FALSE(object->addSlot(makeSlot(object.rawptr(), "x"), 0, false)); }),
        1);
    EXPECT_EQ(object->findSlot(first->Parameter), first);
}

TEST_F(VSlotContainerInputs, ReplaceOneOfTheirNameWithinTheirLevelOnly)
{
    const auto other = object->input("x", 1);
    object->input("x", 0);
    const auto replacing = makeSlot(object.rawptr(), "x");

    EXPECT_EQ(object->addSlot(replacing, 0, true), replacing);

    EXPECT_EQ(object->getNumberOfInputs(), 2);
    EXPECT_EQ(object->getExpertLevel(replacing), 0);
    EXPECT_EQ(object->getExpertLevel(other), 1);
}

TEST_F(VSlotContainerInputs, MayReplaceThemselves)
{
    const WeakPtr<VSlot> slot = object->input("x");
    const VNamedInputSet& level = object->Slots->Inputs.at(0);

    EXPECT_EQ(object->addSlot(*level.begin(), 0, true), slot);
    EXPECT_TRUE(slot);
    EXPECT_EQ(level.size(), 1U);
}

TEST_F(VSlotContainerInputs, AreFoundInTheLowestLevelFirst)
{
    object->input("x", 5);
    const auto low = object->input("x", -3);
    int level = 99;

    EXPECT_EQ(object->getSlot("x", level), low);
    EXPECT_EQ(level, -3);
    EXPECT_EQ(object->getParameter("x"), low->Parameter);
    level = 99;
    EXPECT_FALSE(object->getSlot("y", level));
    EXPECT_EQ(level, 99) << "left alone";
    EXPECT_FALSE(object->getParameter("y"));
}

TEST_F(VSlotContainerInputs, AreFoundByTheirParameter)
{
    const auto slot = object->input("x");
    object->input("y");
    const auto empty =
        object->addSlot(RefPtr<VSlot>(new VSlot(object.rawptr(), {}, "z", "")), 2, false);

    EXPECT_EQ(object->findSlot(slot->Parameter), slot);
    EXPECT_EQ(object->getSlotName(slot->Parameter), "x");
    EXPECT_EQ(object->findSlot({}), empty) << "the first empty one";
    EXPECT_FALSE(object->findSlot(makeParameter("other")));
    EXPECT_EQ(object->getSlotName(makeParameter("other")), "");
}

TEST_F(VSlotContainerInputs, AreRemovedFromTheLowestLevelAndTheirLevelStays)
{
    object->input("x", 0);
    const auto high = object->input("x", 1);
    SlotVisit visit;

    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(object->removeParameter("x")); }), 1);
    EXPECT_EQ(object->getExpertLevel(high), 1);
    EXPECT_EQ(object->iterateParameters(kAllLevels, visit), 2) << "an empty level is finished, too";
    EXPECT_TRUE(object->removeParameter("x"));
    EXPECT_EQ(ticksOf([&] { EXPECT_FALSE(object->removeParameter("x")); }), 0);
}

TEST_F(VSlotContainerInputs, AreVisitedByLevelThenByName)
{
    for (const auto& [name, level] : std::vector<std::pair<string, int>>{
             {"b", 1}, {"ab", 0}, {"a", 0}, {"a", 1}, {"B", 0}, {"c", 2}})
        object->input(name, level);
    SlotVisit all;
    SlotVisit low;
    SlotVisit stopped("ab");
    SlotVisit stoppedLater("b");

    EXPECT_EQ(object->iterateParameters(kAllLevels, all), 3);
    EXPECT_EQ(all.seen, (std::vector<string>{"B0", "a0", "ab0", "a1", "b1", "c2"}));
    EXPECT_EQ(object->iterateParameters(1, low), 2);
    EXPECT_EQ(low.seen.size(), 5U);
    EXPECT_EQ(object->iterateParameters(kAllLevels, stopped), 0);
    EXPECT_EQ(object->iterateParameters(kAllLevels, stoppedLater), 1);
    EXPECT_EQ(object->getNumberOfParameters(0), 3);
    EXPECT_EQ(object->getNumberOfParameters(1), 5);
    EXPECT_EQ(object->getNumberOfInputs(), 6);
}

TEST_F(VSlotContainerInputs, AreNotVisitedIfTheyHaveEnded)
{
    const RefPtr<VSlot> slot = object->input("x");
    object->input("y");
    delete slot.rawptr();
    SlotVisit visit;
    EXPECT_EQ(object->iterateParameters(kAllLevels, visit), 1);
    EXPECT_EQ(visit.seen, std::vector<string>{"y0"});
    int level = 7;
    EXPECT_FALSE(object->getSlot("x", level));
    EXPECT_EQ(level, 7);
}

TEST_F(VSlotContainerInputs, AreTracedAtVerbosity100)
{
    object->input("x");
    SlotVisit visit;
    const int before = verbosity_level;
    verbosity_level = 100;
    const string text = errorOutputOf([&] {
        object->iterateParameters(3, visit);
        object->input("y", 2);
    });
    verbosity_level = 99;
    EXPECT_EQ(errorOutputOf([&] { object->iterateParameters(3, visit); }), "");
    verbosity_level = before;

    EXPECT_EQ(text, "VSlotContainer::iterateInputs(3): Have 1 inputs.\n"
                    "VSlotContainer::iterateInputs(3): `x'\n"
                    "VSlotContainer::addSlot(double,y, 2)\n");
}

TEST_F(VSlotContainerInputs, AreCountedWhereAFunctionAnswersTrue)
{
    object->input("a");
    object->input("b", 1);
    object->input("c", 2);
    string seen;
    const std::function<bool(const RefPtr<VSlot>&, int)> byHandle = [&](const RefPtr<VSlot>& slot,
                                                                        int level) {
        seen += slot->Name + std::to_string(level);
        return true;
    };
    const std::function<bool(VSlot&, int)> byReference = [&](VSlot& slot, int) {
        seen += slot.Name;
        return slot.Name != "b";
    };

    EXPECT_EQ(object->iterate_inputs(byHandle), 3);
    EXPECT_EQ(object->iterate_inputs(byReference), 1);
    EXPECT_EQ(seen, "a0b1c2ab");
}

TEST_F(VSlotContainerInputs, MayBeRemovedByTheFunctionThatIsShownThem)
{
    for (const char* name : {"a", "b", "c"}) object->input(name);
    std::vector<string> shown;
    const std::function<bool(const RefPtr<VSlot>&, int)> removeEach = [&](const RefPtr<VSlot>& slot,
                                                                          int) {
        shown.push_back(slot->Name);
        return object->removeParameter(slot->Name);
    };
    EXPECT_EQ(object->iterate_inputs(removeEach), 3);
    EXPECT_EQ(shown, (std::vector<string>{"a", "b", "c"}));
    EXPECT_EQ(object->getNumberOfInputs(), 0);
}

TEST_F(VSlotContainerInputs, AreNotGivenToAnEmptyFunction)
{
    const std::function<bool(VSlot&, int)> empty;
    EXPECT_EQ(object->iterate_inputs(empty), 0) << "there is none";
    object->input("x");

    EXPECT_THROW(object->iterate_inputs(empty), std::bad_function_call);
}

TEST_F(VSlotContainerInputs, HaveLevelsThatCanBeChanged)
{
    const auto slot = object->input("x", 3);

    EXPECT_EQ(object->getExpertLevel(slot), 3);
    EXPECT_EQ(object->getExpertLevel(slot->Parameter), 3);
    EXPECT_EQ(ticksOf([&] {
                  object->setExpertLevel(slot, 7);
                  EXPECT_EQ(object->getExpertLevel(slot), 7);
                  object->setExpertLevel(slot->Parameter, -1);
                  EXPECT_EQ(object->getExpertLevel(slot), -1);
              }),
              0);
    EXPECT_EQ(object->setExpertLevel(slot, -1), -1) << "where it is";
    EXPECT_EQ(object->setExpertLevel(makeSlot(object.rawptr(), "stranger"), 5), 2000);
    EXPECT_EQ(object->getNumberOfInputs(), 1);
    EXPECT_EQ(object->getExpertLevel(RefPtr<VSlot>()), 2000);
    EXPECT_EQ(object->getExpertLevel(RefPtr<VParameter>(makeParameter("other"))), 2000);
    EXPECT_EQ(object->setExpertLevel(RefPtr<VSlot>(), 1), 2000);
}

TEST_F(VSlotContainerInputs, MayStandAtTheLevelThatAnswersForNone)
{
    const auto slot = object->input("x", 2000);
    EXPECT_EQ(object->setExpertLevel(RefPtr<VSlot>(), 5), 2000);
    EXPECT_EQ(object->setExpertLevel(makeSlot(object.rawptr(), "stranger"), 5), 2000);
    EXPECT_EQ(object->setExpertLevel(slot, 5), 5);
    EXPECT_EQ(object->getExpertLevel(slot), 5);
    EXPECT_EQ(object->getNumberOfInputs(), 1);
}

TEST_F(VSlotContainerInputs, AreNotLostWhereTheirNameIsTaken)
{
    const auto slot = object->input("x", 0);
    object->input("x", 1);
    object->setExpertLevel(slot, 1);

    EXPECT_EQ(object->getExpertLevel(slot), 0);
    EXPECT_EQ(object->getNumberOfInputs(), 2);
}

TEST_F(VSlotContainerInputs, HaveNoLevelsByName)
{
    const auto slot = object->input("x", 3);

    const string text = outputOf([&] { EXPECT_EQ(object->setExpertLevel("x", 5), 0); });

    EXPECT_EQ(
        text,
        "int VSlotContainer::setExpertLevel(const ParameterID&s, int EL): NOT IMPLEMENTED!\n");
    EXPECT_EQ(object->getExpertLevel(slot), 3);
    EXPECT_EQ(object->getExpertLevel("x"), 0);
    EXPECT_EQ(object->getExpertLevel("none"), 0);
}

TEST_F(VSlotContainerInputs, AreUniqueByTypeOnlyWhereThereIsOne)
{
    EXPECT_FALSE(object->getUniqueInputSlot(typeid(double)));
    const auto slot = object->input("x");
    object->addSlot(RefPtr<VSlot>(new VSlot(object.rawptr(), {}, "empty", "")), 0, false);
    EXPECT_EQ(object->getUniqueInputSlot(typeid(double)), slot);
    EXPECT_FALSE(object->getUniqueInputSlot(typeid(int)));
    EXPECT_FALSE(object->getUniqueInputSlot(typeid(void))) << "what is empty fits nothing";
    object->input("y", 1);
    EXPECT_FALSE(object->getUniqueInputSlot(typeid(double)));
    object->input("z", 1);
    EXPECT_FALSE(object->getUniqueInputSlot(typeid(double)));
}

TEST_F(VSlotContainerInputs, AreIgnoredByTheHeadOfTheirName)
{
    EXPECT_TRUE(object->ignoreInput(object->input("qZelm::x")));
    EXPECT_FALSE(object->ignoreInput(object->input("qZelm:x")));
    EXPECT_FALSE(object->ignoreInput(object->input("x qZelm::")));
}

TEST_F(VSlotContainerInputs, CanBeGivenParametersOfTheirOwn)
{
    const auto slot = object->input("x");
    const RefPtr<VParameter> shared = slot->Parameter;
    shared->setValueFromText("4", {}, "", true, {}, nullptr, nullptr);
    const Ageable before = object->ConnectionAge();

    const RefPtr<VParameter> unique = object->mkUniqueParameterInput(shared, "mine");

    EXPECT_EQ(slot->Parameter, unique);
    EXPECT_FALSE(unique == shared);
    EXPECT_EQ(unique->name, "mine.x");
    EXPECT_EQ(unique->getValueAsText({}, "", false), "4");
    EXPECT_EQ(object->ConnectionAge(), before) << "assigned, not attached";

    RefPtr<VParameter> byName;
    const string text = outputOf([&] { byName = object->mkUniqueParameterInput("x", "again"); });
    EXPECT_EQ(text, "uniquying parameter\n");
    EXPECT_EQ(byName->name, "again.x");
    EXPECT_EQ(slot->Parameter, byName);
}

TEST_F(VSlotContainerInputs, AreMadeUniqueWithoutAskingObservers)
{
    const auto slot = object->input("x");
    const RefPtr<VParameter> shared = slot->Parameter;
    const RefPtr<Objection> objection(new Objection);
    ASSERT_TRUE(objection->activate());

    const RefPtr<VParameter> unique = object->mkUniqueParameterInput(shared, "");

    EXPECT_EQ(slot->Parameter, unique);
    EXPECT_EQ(unique->name, ".x") << "an empty name is one as well";
}

TEST_F(VSlotContainerInputs, ThatAreNotThereCannotBeMadeUnique)
{
    const auto stranger = makeParameter("stranger");

    EXPECT_EQ(outputOf([&] {
                  EXPECT_FALSE(object->mkUniqueParameterInput(RefPtr<VParameter>(stranger), "p"));
              }),
              "Parameter stranger not found.\n");
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(object->mkUniqueParameterInput("none", "p")); }),
              "uniquying parameter\nParameter none not found.\n");
    EXPECT_EQ(
        outputOf([&] { EXPECT_FALSE(object->mkUniqueParameterInput(RefPtr<VParameter>(), "p")); }),
        "Parameter  not found.\n");
}

TEST_F(VSlotContainerInputs, WhoseParameterCannotBeCopiedStayAsTheyAre)
{
    const RefPtr<VParameter> single(new QuorlTest::EmptyParameter);
    const RefPtr<VSlot> slot = object->addParameter("x", 0, single, false);
    EXPECT_FALSE(object->mkUniqueParameterInput(single, "p"));
    EXPECT_EQ(slot->Parameter, single);
    const RefPtr<VSlot> empty(new VSlot(object.rawptr(), {}, "empty", ""));
    object->addSlot(empty, 0, false);
    outputOf([&] { EXPECT_FALSE(object->mkUniqueParameterInput("empty", "p")); });
}

TEST_F(VSlotContainerInputs, ArePassedOverOnceTheyEndedBehindTheirBack)
{
    auto* const mortal = new VSlot(object.rawptr(), makeParameter("a"), "a", "");
    object->addSlot(RefPtr<VSlot>(mortal), 0, false);
    const auto slot = object->input("b");
    delete mortal;
    SlotVisit visit;
    int level = -1;

    EXPECT_EQ(object->iterateParameters(kAllLevels, visit), 1);
    EXPECT_EQ(visit.seen, std::vector<string>{"b0"});
    EXPECT_EQ(object->findSlot(slot->Parameter), slot);
    EXPECT_EQ(object->getUniqueInputSlot(typeid(double)), slot);
    EXPECT_FALSE(object->getSlot("", level)) << "it has no name any more";
    EXPECT_EQ(level, -1);
    slot->Parameter->touchValue(pool);
    EXPECT_EQ(object->YoungestInput(pool), Ageable::GlobalTime);
}

TEST(AddSlot, NeedsAContainerAndASlot)
{
    Network network;
    const auto object = network.node("object");
    const RefPtr<VSlot> slot = makeSlot(object.rawptr(), "x");
    EXPECT_FALSE(addSlot(nullptr, slot, 0, false));
    EXPECT_FALSE(addSlot(object.rawptr(), {}, 0, false));
    EXPECT_EQ(addSlot(object.rawptr(), slot, 0, false), slot);
}

TEST(VNamedInputSet, ChangesTheShapeWhenItEnds)
{
    std::optional<VNamedInputSet> inputs(std::in_place);
    const auto before = Tolmen::Watch::shape();
    inputs.reset();
    EXPECT_NE(Tolmen::Watch::shape(), before);
}

TEST(VNamedInputSet, ComplainsOfSlotsThatEndedBehindItsBack)
{
    const string text = outputOf([] {
        VNamedInputSet inputs;
        auto* const slot = new VSlot;
        inputs.insert(RefPtr<VSlot>(slot));
        delete slot;
    });

    EXPECT_EQ(text,
              "VSlotContainer::~NamedInputSet(): ALERT! Invalid Slot weakrefs=1/strongrefs=-1\n");
}

} // namespace
} // namespace Quorl
