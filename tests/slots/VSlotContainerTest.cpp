#include <quorl/slots/VSlotContainer.h>

#include <quorl/objects/VObjectAge.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/services/Vprintf.h>
#include <quorl/slots/VSlotTables.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>
#include <tests/support/Objection.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::errorOutputOf;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Objection;
using QuorlTest::outputOf;
using QuorlTest::ticksOf;

constexpr int kAllLevels = VSlotContainer::kAllLevels;

RefPtr<VSlot> makeSlot(VSlotContainer* owner, const string& name)
{
    return RefPtr<VSlot>(new VSlot(owner, makeParameter(name), name, ""));
}

/// Notes the inputs that it is shown, and stops at one of them.
struct Visit final : VSlotIterator
{
    explicit Visit(const string& last = "") : stopAt(last) {}
    bool apply(const RefPtr<VSlot>& slot, int expertLevel) override
    {
        seen.push_back(slot->Name + std::to_string(expertLevel));
        return slot->Name != stopAt;
    }
    string stopAt;
    std::vector<string> seen;
};

struct Fixture : testing::Test
{
    Network network;
    RefPtr<QuorlTest::Node> object = network.node("object");
    RefPtr<ValuePool> pool = makePool();
};

using VSlotContainerInputs = Fixture;
using VSlotContainerOutputs = Fixture;
using VSlotContainerAges = Fixture;
using VSlotContainerSetup = Fixture;

TEST(VSlotContainer, MayBeBareAndEmpty)
{
    const RefPtr<VSlotContainer> container(new VSlotContainer);
    Visit visit;

    EXPECT_EQ(container->iterateParameters(kAllLevels, visit), 0);
    EXPECT_EQ(container->YoungestInput({}), Ageable(0));
    EXPECT_EQ(container->getNumberOfInputs(), 0);
    EXPECT_EQ(container->getNumberOfOutputs(), 0);
    EXPECT_EQ(container->age({}), container->LocalAge);
    EXPECT_EQ(container->ConnectionAge(), container->Slots->InputSetAge);
}

TEST(VSlotContainer, HasATextForEachCodeOfAnAttachment)
{
    const auto message = &VSlotContainer::AttachErrorCodeMessage;
    EXPECT_EQ(message(0), "Attachment ok");
    EXPECT_EQ(message(1), "Attachment not allowed");
    EXPECT_EQ(message(2), "Attachment done to output parameter");
    EXPECT_EQ(message(-1), "Attachment not possible because source parameter not found");
    EXPECT_EQ(message(-2), "Attachment not possible because invalid (null) destination parameter");
    EXPECT_EQ(message(-3), "Attachment not possible because invalid (null) source parameter");
    EXPECT_EQ(message(-4), "Attachment not possible because destination parameter not found");
    EXPECT_EQ(message(-5), "Attachment not possible because incompatible parameter types");
    EXPECT_EQ(message(3), "");
    EXPECT_EQ(message(-6), "");
}

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
    Visit visit;

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
    Visit all;
    Visit low;
    Visit stopped("ab");
    Visit stoppedLater("b");

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
    Visit visit;
    EXPECT_EQ(object->iterateParameters(kAllLevels, visit), 1);
    EXPECT_EQ(visit.seen, std::vector<string>{"y0"});
    int level = 7;
    EXPECT_FALSE(object->getSlot("x", level));
    EXPECT_EQ(level, 7);
}

TEST_F(VSlotContainerInputs, AreTracedAtVerbosity100)
{
    object->input("x");
    Visit visit;
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

TEST(AddSlot, NeedsAContainerAndASlot)
{
    Network network;
    const auto object = network.node("object");
    const RefPtr<VSlot> slot = makeSlot(object.rawptr(), "x");
    EXPECT_FALSE(addSlot(nullptr, slot, 0, false));
    EXPECT_FALSE(addSlot(object.rawptr(), {}, 0, false));
    EXPECT_EQ(addSlot(object.rawptr(), slot, 0, false), slot);
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

// Outputs

struct OutputVisit final : VOutputIterator
{
    explicit OutputVisit(int most = 1000) : left(most) {}
    bool apply(const std::type_info& type, const RefPtr<VSlot>& slot) override
    {
        seen.push_back(slot->Name + ":" + type.name());
        return --left > 0;
    }
    int left;
    std::vector<string> seen;
};

TEST_F(VSlotContainerOutputs, MakeTheContainerTheirSourceAndMoveNoAge)
{
    const RefPtr<VParameter> parameter = makeParameter("p");

    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(object->registerOutput(parameter, "out")); }), 0);

    EXPECT_EQ(parameter->source, object);
    EXPECT_EQ(object->getOutput("out")->Parameter, parameter);
    EXPECT_EQ(object->findOutputSlot(parameter), object->getOutput("out"));
    EXPECT_EQ(object->getNumberOfOutputs(), 1);
    EXPECT_FALSE(object->registerOutput(RefPtr<VParameter>(), "out"));
    EXPECT_FALSE(object->getOutput("none"));
}

TEST_F(VSlotContainerOutputs, AreNamedAfterTheirParameterIfAtAll)
{
    const RefPtr<VParameter> parameter = makeParameter("p");
    parameter->setCreator(object.rawptr());
    object->registerOutput(parameter, "");
    parameter->setName("changed");

    EXPECT_TRUE(object->getOutput("object.p")) << "as it was called then";
}

TEST_F(VSlotContainerOutputs, MayBeEnteredTwice)
{
    const RefPtr<VParameter> parameter = makeParameter("p");
    object->registerOutput(parameter, "out");

    EXPECT_TRUE(object->registerOutput(parameter, "out"));
    EXPECT_EQ(object->getNumberOfOutputs(), 2);
}

TEST_F(VSlotContainerOutputs, AreRefusedIfTheyHaveAnotherSource)
{
    const auto other = network.node("other");
    const RefPtr<VParameter> foreign = other->output("out");

    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(object->registerOutput(foreign, "as")); }),
              "VSlotContainer::registerOutput(RefPtr<VParameter>) Parameter=out, type=double, "
              "as=as): NOT ADDED - INVALID PARAMETER SOURCE!\n");
    EXPECT_EQ(outputOf([&] {
                  EXPECT_FALSE(object->registerOutput(other->getOutput("out")));
                  EXPECT_FALSE(object->registerOutput(foreign, "as", typeid(int), ""));
                  EXPECT_FALSE(object->registerOutput(foreign, typeid(int), ""));
              }),
              "");
    EXPECT_EQ(object->getNumberOfOutputs(), 0);
}

TEST_F(VSlotContainerOutputs, CanBeSlotsThatExist)
{
    const auto slot = makeSlot(object.rawptr(), "ready");

    EXPECT_TRUE(object->registerOutput(slot));
    EXPECT_EQ(object->getOutput("ready"), slot);
    EXPECT_EQ(slot->Parameter->source, object);
    EXPECT_FALSE(object->registerOutput(RefPtr<VSlot>()));
    EXPECT_FALSE(object->registerOutput(RefPtr<VSlot>(new VSlot(object.rawptr(), {}, "e", ""))));
}

TEST_F(VSlotContainerOutputs, MayStandUnderAnotherTypeWithAMember)
{
    const RefPtr<VParameter> parameter = makeParameter("p");
    EXPECT_TRUE(object->registerOutput(parameter, "as int", typeid(int), "member"));
    EXPECT_TRUE(object->registerOutput(parameter, typeid(char), "c"));

    EXPECT_TRUE(object->implements(typeid(int)));
    EXPECT_FALSE(object->implements(typeid(double)));
    EXPECT_EQ(object->getImplementation(typeid(int), "as int", "member"), parameter);
    EXPECT_FALSE(object->getImplementation(typeid(int), "as int", ""));
    EXPECT_EQ(object->getImplementationSlot(typeid(char), "", "")->Name, "p");
    EXPECT_EQ(object->getImplementationSlot(typeid(char), "p", "c")->Member, "c");
}

TEST_F(VSlotContainerOutputs, AreVisitedByTypeOrAll)
{
    const RefPtr<VParameter> first = object->output("b");
    object->output("a");
    object->registerOutput(first, "c", typeid(int), "");
    OutputVisit doubles;
    OutputVisit all;
    OutputVisit one(1);

    EXPECT_EQ(object->iterateOutputs(doubles, typeid(double)), 2);
    EXPECT_EQ(doubles.seen, (std::vector<string>{"b:d", "a:d"})) << "in the order of registration";
    EXPECT_EQ(object->iterateOutputs(all, typeid(void)), 3);
    EXPECT_EQ(object->iterateOutputs(one, typeid(void)), 1) << "the one that stopped it counts";
    EXPECT_EQ(object->getImplementationSlot(typeid(double), "", "")->Name, "b");
    const RefPtr<Tolmen::StringList> names = object->getOutputs(typeid(double));
    EXPECT_EQ(std::vector<string>(names->begin(), names->end()), (std::vector<string>{"b", "a"}));
}

TEST_F(VSlotContainerOutputs, AreNamedForTheVoidTypeOnlyIfTheyHaveIt)
{
    object->output("number");
    object->registerOutput(RefPtr<VParameter>(new QuorlTest::EmptyParameter), "nothing");

    const RefPtr<Tolmen::StringList> names = object->getOutputs(typeid(void));
    EXPECT_EQ(std::vector<string>(names->begin(), names->end()), std::vector<string>{"nothing"});
    EXPECT_TRUE(object->getOutputs(typeid(char))->empty());
}

TEST_F(VSlotContainerOutputs, MayBeAskedForByAVisitor)
{
    struct Attach final : VOutputIterator
    {
        Attach(const RefPtr<QuorlTest::Node>& o, const RefPtr<VSlot>& p) : owner(o), place(p) {}
        bool apply(const std::type_info&, const RefPtr<VSlot>& slot) override
        {
            return place->attachSlot(slot) && owner->getOutput(slot->Name);
        }
        RefPtr<QuorlTest::Node> owner;
        RefPtr<VSlot> place;
    };
    object->output("out");
    Attach attach(object, network.node("other")->input("x"));

    EXPECT_EQ(object->iterateOutputs(attach, typeid(void)), 1);
    EXPECT_EQ(attach.place->Parameter->source, object);
}

TEST_F(VSlotContainerOutputs, TellWhatFitsASlot)
{
    object->output("out");
    const auto other = network.node("other");

    EXPECT_TRUE(object->provides(other->input("x")));
    EXPECT_FALSE(object->provides(RefPtr<VSlot>()));
    EXPECT_FALSE(object->provides(RefPtr<VSlot>(new VSlot(other.rawptr(), {}, "empty", ""))));
    EXPECT_FALSE(other->provides(other->input("y")));
    const auto infos = object->getAcceptInfoList(typeid(double));
    ASSERT_EQ(infos.size(), 1U);
    EXPECT_EQ(*infos.front()->type, typeid(double));
    EXPECT_EQ(infos.front()->name, "out");
    EXPECT_EQ(infos.front()->weight, 1.0);
    EXPECT_TRUE(object->getAcceptInfoList(typeid(int)).empty());
}

// Ages

TEST_F(VSlotContainerAges, AreOldInAContextWhereTheContainerNeverRan)
{
    const VSlotContainer& constant = *object;

    EXPECT_EQ(constant.age(pool), Ageable::Ooooold);
    EXPECT_EQ(pool->ObjectAgePool().size(), 1U) << "a mere question enters it";
    object->age(pool) = Ageable(5);
    EXPECT_EQ(constant.age(pool), Ageable(5));
    EXPECT_EQ(&constant.age({}), &object->LocalAge);
}

TEST_F(VSlotContainerAges, TakeTheYoungestOfInputsAndTheirSources)
{
    const auto source = network.node("source");
    const auto slot = network.connect(source, object, "qZelm::ignored by requests");
    object->addSlot(RefPtr<VSlot>(new VSlot(object.rawptr(), {}, "empty", "")), 0, false);
    EXPECT_EQ(object->YoungestInput(pool), slot->ConnectionTime);
    source->age(pool) = QuorlTest::tick();
    EXPECT_EQ(object->YoungestInput(pool), source->age(pool));
    slot->Parameter->touchValue(pool);
    EXPECT_EQ(object->YoungestInput(pool), Ageable::GlobalTime);

    const auto cached = object->input("cached", 3);
    cached->Cached = true;
    cached->Parameter->touchValue(pool);
    EXPECT_EQ(object->YoungestInput(pool), Ageable::GlobalTime);
    EXPECT_LT(object->YoungestUncachedInput(pool), Ageable::GlobalTime);
}

TEST_F(VSlotContainerAges, AreTheContainersOwnInAContextThatHasEnded)
{
    const WeakPtr<ValuePool> left = pool;
    pool = RefPtr<ValuePool>();
    const RefPtr<ValuePool> dead = left;

    EXPECT_EQ(&object->age(dead), &object->LocalAge);
    EXPECT_NE(dead.referer, nullptr);
}

TEST_F(VSlotContainerAges, OfAnInputWithoutValueAreNewerThanNothing)
{
    const RefPtr<VSlot> slot(new VSlot(object.rawptr(), {}, "empty", ""));
    object->addSlot(slot, 0, false);
    slot->ConnectionTime = Ageable::Ooooold;
    EXPECT_FALSE(slot->isNew(pool));
    EXPECT_FALSE(object->hasChanged(slot, pool)) << "though the object never ran";
    EXPECT_FALSE(object->hasChanged(RefPtr<VSlot>(), pool));
}

TEST_F(VSlotContainerAges, MakeTheVariablesOfLocalInputs)
{
    const auto slot = object->input("x");
    slot->Parameter->Localize();
    QuorlTest::tick();

    EXPECT_EQ(object->YoungestInput(pool), Ageable::GlobalTime) << "made by the question";
    EXPECT_TRUE(pool->findVariable(slot->Parameter));
}

TEST_F(VSlotContainerAges, CompareWithInputsOfAllLevels)
{
    const auto slot = object->input("x", 100);
    slot->Parameter->touchValue(pool);

    EXPECT_TRUE(object->HasYoungerInput(pool, 0)) << "the level does not narrow it";
    EXPECT_TRUE(object->hasChanged(slot, pool));
    EXPECT_TRUE(object->hasChanged("x", pool));
    object->age(pool) = Ageable::GlobalTime;
    EXPECT_FALSE(object->HasYoungerInput(pool, 1000));
    EXPECT_FALSE(object->hasChanged(slot, pool));
    EXPECT_FALSE(object->hasChanged("none", pool));
    EXPECT_FALSE(object->hasChanged(RefPtr<VSlot>(), pool));
}

TEST_F(VSlotContainerAges, AnswerForListsOfNames)
{
    object->age(pool) = QuorlTest::tick();
    object->input("a")->Parameter->defaultValue->age() = Ageable(0);
    object->age(pool) = Ageable::GlobalTime;
    EXPECT_FALSE(object->hasChanged(pool, 2, "a", "b"));
    EXPECT_FALSE(object->hasChanged(pool, "a", "b", nullptr));
    object->input("b")->Parameter->touchValue(pool);

    EXPECT_TRUE(object->hasChanged(pool, 2, "a", "b"));
    EXPECT_FALSE(object->hasChanged(pool, 1, "a", "b"));
    EXPECT_FALSE(object->hasChanged(pool, 0));
    EXPECT_TRUE(object->hasChanged(pool, "a", "b", nullptr));
    EXPECT_FALSE(object->hasChanged(pool, "a", nullptr, "b", nullptr));
}

TEST_F(VSlotContainerAges, TellNewlyConnectedOutputs)
{
    const RefPtr<VParameter> output = object->output("out");
    const RefPtr<VParameter> quiet = object->output("quiet");
    object->age(pool) = Ageable::GlobalTime;
    EXPECT_FALSE(object->hasNewlyConnectedOutputs(pool));
    network.node("other")->input("x")->attachSource(output);
    VSlotSet found;
    found.insertSlot(makeSlot(object.rawptr(), "out"), false);
    object->findNewlyConnectedOutputs(pool, found);

    EXPECT_TRUE(object->hasNewlyConnectedOutputs(pool));
    EXPECT_TRUE(object->isNewlyConnected(output, pool));
    EXPECT_FALSE(object->isNewlyConnected(quiet, pool));
    EXPECT_FALSE(object->isNewlyConnected(makeParameter("other"), pool));
    EXPECT_EQ(found.size(), 1U);
    EXPECT_EQ(*found.begin(), object->getOutput("out")) << "in place of its namesake";
}

TEST_F(VSlotContainerAges, CompareWithOutputs)
{
    const RefPtr<VParameter> output = object->output("out");
    object->age(pool) = Ageable::GlobalTime;
    EXPECT_FALSE(object->isYounger(output, pool));
    output->touchValue(pool);

    EXPECT_TRUE(object->isYounger(output, pool));
    EXPECT_FALSE(object->isYounger(makeParameter("other"), pool));
    EXPECT_EQ(object->YoungestOutput(pool), Ageable::GlobalTime);
}

// Setting up

string order;

class Prepared final : public QuorlTest::Node
{
public:
    using Node::Node;
    void setup(const VSlotSet& slots) override { order += "s" + std::to_string(slots.size()); }
};

class Functor final : public VSlotContainer::SetupFunctor
{
public:
    void apply(VSlotContainer* container, const VSlotSet& slots) override
    {
        order += "c" + std::to_string(slots.size());
        last = container;
        called.push_back(this);
    }
    VSlotContainer* last = nullptr;
    static inline std::vector<const Functor*> called;
};

void setupFunction(VSlotContainer*, const VSlotSet& slots)
{
    order += "f" + std::to_string(slots.size());
}

TEST_F(VSlotContainerSetup, RunsOverrideThenFunctionsThenFunctors)
{
    const auto prepared = network.adopt(new Prepared("prepared"));
    const RefPtr<Functor> functor(new Functor);
    prepared->addSetupFunction(&setupFunction);
    prepared->addSetupFunction(&setupFunction);
    prepared->addSetupFunction(nullptr);
    prepared->addSetupFunctor(functor);
    prepared->addSetupFunctor(functor);
    prepared->addSetupFunctor(
        WeakPtr<VSlotContainer::SetupFunctor>(RefPtr<VSlotContainer::SetupFunctor>(new Functor)));

    order.clear();
    prepared->initialize();
    EXPECT_EQ(order, "s0f0c0");
    EXPECT_EQ(functor->last, prepared.rawptr());
    EXPECT_EQ(prepared->SetupFunctors.size(), 2U) << "the dead stay";

    order.clear();
    prepared->initialize(WeakPtr<VSlot>(prepared->input("x")));
    EXPECT_EQ(order, "s1f1c1");
}

void secondFunction(VSlotContainer*, const VSlotSet&)
{
    order += "g";
}

TEST_F(VSlotContainerSetup, RunsFunctionsByAddressAndFunctorsByHandle)
{
    std::vector<RefPtr<Functor>> functors;
    for (int i = 0; i < 8; ++i) functors.emplace_back(new Functor);
    for (const auto& functor : functors) object->addSetupFunctor(functor);
    object->addSetupFunction(&secondFunction);
    object->addSetupFunction(&setupFunction);
    Functor::called.clear();
    order.clear();
    object->initialize();

    const bool isSecondFirst =
        std::less<VSlotContainer::SetupFunction>()(&secondFunction, &setupFunction);
    EXPECT_EQ(order.substr(0, 3), isSecondFirst ? "gf0" : "f0g");
    std::sort(functors.begin(), functors.end());
    for (std::size_t i = 0; i < functors.size(); ++i)
        EXPECT_EQ(Functor::called.at(i), functors[i].rawptr());
}

TEST_F(VSlotContainerSetup, RunsFunctorsThatNobodyOwns)
{
    Functor onTheStack;
    object->addSetupFunctor(&onTheStack);
    object->initialize();

    EXPECT_EQ(onTheStack.last, object.rawptr());
}

TEST(VSlotSet, HoldsOneSlotOfEachName)
{
    Network network;
    const auto object = network.node("object");
    const auto first = makeSlot(object.rawptr(), "x");
    const auto second = makeSlot(object.rawptr(), "x");
    VSlotSet slots;

    EXPECT_EQ(slots.insertSlot(first, false), first);
    EXPECT_FALSE(slots.insertSlot(second, false));
    EXPECT_FALSE(slots.insertSlot({}, true));
    EXPECT_TRUE(slots.contains(first));
    EXPECT_FALSE(slots.contains(second));
    EXPECT_EQ(slots.insertSlot(second, true), second);
    EXPECT_EQ(slots.insertSlot(*slots.begin(), true), second) << "by itself";
    EXPECT_EQ(slots.findByName("x"), second);
    EXPECT_EQ(slots.findFirstParameter(second->Parameter), second);
    EXPECT_FALSE(slots.findFirstParameter(first->Parameter));
    EXPECT_TRUE(slots.removeSlot("x"));
    EXPECT_FALSE(slots.removeSlot("x"));
    EXPECT_FALSE(slots.findByName("x"));
}

TEST(VSlotSet, VisitsItsSlotsByNameWithTheLevelGiven)
{
    Network network;
    const auto object = network.node("object");
    VSlotSet slots;
    for (const char* name : {"b", "a", "c"})
        slots.insertSlot(makeSlot(object.rawptr(), name), false);
    Visit all;
    Visit stopped("b");

    EXPECT_EQ(slots.iterate(7, all), 3);
    EXPECT_EQ(all.seen, (std::vector<string>{"a7", "b7", "c7"}));
    EXPECT_EQ(slots.iterate(7, stopped), 1);
}

} // namespace
} // namespace Quorl
