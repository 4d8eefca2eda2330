#include <quorl/slots/VSlotContainer.h>

#include <quorl/slots/VSlotTables.h>
#include <tests/slots/ContainerTestTypes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

/// A container as it begins, and as it is set up.
namespace Quorl
{
namespace
{

using QuorlTest::SlotVisit;

using VSlotContainerSetup = QuorlTest::ContainerTest;

TEST(VSlotContainer, MayBeBareAndEmpty)
{
    const RefPtr<VSlotContainer> container(new VSlotContainer);
    SlotVisit visit;

    EXPECT_EQ(container->iterateParameters(VSlotContainer::kAllLevels, visit), 0);
    EXPECT_EQ(container->YoungestInput({}), Ageable(0));
    EXPECT_EQ(container->getNumberOfInputs(), 0);
    EXPECT_EQ(container->getNumberOfOutputs(), 0);
    EXPECT_EQ(container->age({}), container->LocalAge);
    EXPECT_EQ(container->ConnectionAge(), container->Slots->InputSetAge);
}

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

/// Does something when it is called.
struct Acting final : VSlotContainer::SetupFunctor
{
    explicit Acting(std::function<void()> whenCalled) : act(std::move(whenCalled)) {}
    void apply(VSlotContainer*, const VSlotSet&) override
    {
        ++calls;
        act();
    }
    const std::function<void()> act;
    int calls = 0;
};

TEST(VSlotContainer, MayEndInItsSetUp)
{
    RefPtr<VSlotContainer> container(new VSlotContainer);
    const WeakPtr<VSlotContainer> watch = container;
    std::vector<RefPtr<Acting>> functors;
    for (int number = 0; number < 3; ++number)
    {
        functors.emplace_back(new Acting([&] { container = RefPtr<VSlotContainer>(); }));
        container->addSetupFunctor(functors.back());
    }

    watch->initialize();

    for (const auto& functor : functors) EXPECT_EQ(functor->calls, 1);
    EXPECT_FALSE(watch);
}

TEST(VSlotContainer, LosesSetupFunctorsInItsSetUp)
{
    const RefPtr<VSlotContainer> container(new VSlotContainer);
    const RefPtr<Acting> clearing(new Acting([&] { container->SetupFunctors.clear(); }));
    const RefPtr<Acting> other(new Acting([&] { container->SetupFunctors.clear(); }));
    container->addSetupFunctor(clearing);
    container->addSetupFunctor(other);

    container->initialize();

    EXPECT_EQ(clearing->calls + other->calls, 1);
}

TEST_F(VSlotContainerSetup, RunsFunctorsThatNobodyOwns)
{
    Functor onTheStack;
    object->addSetupFunctor(&onTheStack);
    object->initialize();

    EXPECT_EQ(onTheStack.last, object.rawptr());
}

} // namespace
} // namespace Quorl
