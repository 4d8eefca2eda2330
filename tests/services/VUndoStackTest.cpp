#include <quorl/services/VUndoStack.h>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Quorl
{
namespace
{

class Append final : public VUndoAction
{
public:
    Append(string& target, const string& label) : VUndoAction(label), target_(target) {}
    bool undo() override
    {
        target_ += text;
        if (whenUndone) whenUndone();
        return answer;
    }
    bool answer = true;
    std::function<void()> whenUndone;

private:
    string& target_;
};

struct Undo : testing::Test
{
    void SetUp() override { VUndoStack::GlobalUndoStack().setSize(0); }
    void TearDown() override { VUndoStack::GlobalUndoStack().setSize(0); }

    RefPtr<Append> add(const RefPtr<VUndoStack>& to, const string& label)
    {
        const RefPtr<Append> action(new Append(taken, label));
        to->AddAction(action);
        return action;
    }

    VUndoStack& global = VUndoStack::GlobalUndoStack();
    RefPtr<VUndoStack> stack{new VUndoStack};
    string taken;
};

using VUndoStackTest = Undo;

TEST_F(VUndoStackTest, AnswersFalseWhileEmpty)
{
    EXPECT_FALSE(stack->undo());
    EXPECT_EQ(stack->size(), 0);
    EXPECT_EQ(stack->name, "");
}

TEST_F(VUndoStackTest, SurvivesItsOwnEndInTheUndoOfAnAction)
{
    const WeakPtr<VUndoStack> watch = stack;
    add(stack, "A");
    add(stack, "B")->whenUndone = [this] { stack = RefPtr<VUndoStack>(); };
    EXPECT_TRUE(watch->undo());
    EXPECT_FALSE(watch);
    EXPECT_EQ(taken, "B");
}

TEST_F(VUndoStackTest, UndoesNewestFirst)
{
    for (const char* label : {"A", "B", "C"}) add(stack, label);
    while (stack->undo())
    {
    }

    EXPECT_EQ(taken, "CBA");
    EXPECT_EQ(stack->size(), 0);
}

TEST_F(VUndoStackTest, DropsTheActionEvenWhenItsUndoFails)
{
    add(stack, "A");
    add(stack, "B")->answer = false;

    EXPECT_FALSE(stack->undo());
    EXPECT_EQ(stack->size(), 1);
    EXPECT_TRUE(stack->undo());
    EXPECT_EQ(taken, "BA");
}

TEST_F(VUndoStackTest, KeepsTheActionDuringItsUndoAndAfterAnException)
{
    const auto action = add(stack, "A");
    int during = 0;
    action->whenUndone = [&] {
        during = stack->size();
        throw std::runtime_error("not now");
    };

    EXPECT_THROW(stack->undo(), std::runtime_error);
    EXPECT_EQ(during, 1);
    EXPECT_EQ(stack->size(), 1);
}

TEST_F(VUndoStackTest, SurvivesAnActionThatEmptiesItMeanwhile)
{
    add(stack, "A");
    add(stack, "B")->whenUndone = [&] { stack->setSize(0); };

    EXPECT_TRUE(stack->undo());
    EXPECT_EQ(stack->size(), 0);
}

TEST_F(VUndoStackTest, IsCutToItsNewest)
{
    for (const char* label : {"A", "B", "C", "D", "E"}) add(stack, label);

    EXPECT_EQ(stack->setSize(-1), -1);
    EXPECT_EQ(stack->size(), 5);
    EXPECT_EQ(stack->setSize(2), 2);
    EXPECT_EQ(stack->setSize(9), 2);
    while (stack->undo())
    {
    }
    EXPECT_EQ(taken, "ED");
    EXPECT_EQ(stack->setSize(0), 0);
}

TEST_F(VUndoStackTest, IsUndoneGloballyInReverseOrderOfAllStacks)
{
    const RefPtr<VUndoStack> other(new VUndoStack);
    add(stack, "1");
    add(other, "2");
    add(other, "3");
    add(stack, "4");
    while (global.undo())
    {
    }

    EXPECT_EQ(taken, "4321");
    EXPECT_EQ(stack->size() + other->size(), 0);
}

TEST_F(VUndoStackTest, IsNotKeptInStepWithTheGlobalStack)
{
    add(stack, "A");
    add(stack, "B");
    stack->undo();
    EXPECT_EQ(global.size(), 2) << "nothing withdraws the global entry";

    EXPECT_TRUE(global.undo());
    EXPECT_EQ(taken, "BA") << "the next older one";
    EXPECT_FALSE(global.undo()) << "the stack is empty";
    EXPECT_EQ(global.size(), 0);
}

TEST_F(VUndoStackTest, BoundsTheGlobalStackToAHundredEntriesOfOthers)
{
    for (int i = 0; i < 101; ++i) add(stack, "x");

    EXPECT_EQ(global.size(), 100);
    EXPECT_EQ(stack->size(), 101);
    for (int i = 0; i < 100; ++i) EXPECT_TRUE(global.undo());
    EXPECT_FALSE(global.undo());
    EXPECT_EQ(stack->size(), 1) << "the first one's entry is gone";
}

TEST_F(VUndoStackTest, DoesNotBoundWhatIsAddedToTheGlobalStackItself)
{
    for (int i = 0; i < 101; ++i) global.AddAction(new Append(taken, "x"));
    EXPECT_EQ(global.size(), 101);

    add(stack, "y");
    EXPECT_EQ(global.size(), 100);
}

TEST_F(VUndoStackTest, LeavesAnEntryThatAnswersFalseWhenItEnds)
{
    add(stack, "A");
    stack = RefPtr<VUndoStack>();

    EXPECT_EQ(global.size(), 1);
    EXPECT_FALSE(global.undo());
    EXPECT_EQ(global.size(), 0);
    EXPECT_EQ(taken, "");
}

TEST_F(VUndoStackTest, IsUndoneGloballyAlsoWhereNobodyOwnsIt)
{
    VUndoStack onTheStack;
    onTheStack.AddAction(new Append(taken, "A"));

    EXPECT_TRUE(global.undo());
    EXPECT_EQ(taken, "A");
    EXPECT_EQ(onTheStack.size(), 0);
}

TEST_F(VUndoStackTest, MayEndInItsOwnGlobalUndo)
{
    add(stack, "A")->whenUndone = [&] { stack = RefPtr<VUndoStack>(); };

    EXPECT_TRUE(global.undo());
    EXPECT_EQ(taken, "A");
    EXPECT_EQ(global.size(), 0);
}

/// Does something when it ends, and when it is undone.
struct Ending final : VUndoAction
{
    explicit Ending(std::function<void()> atEnd) : VUndoAction("ends"), whenEnded(std::move(atEnd))
    {
    }
    ~Ending() override { whenEnded(); }
    bool undo() override
    {
        if (whenUndone) whenUndone();
        return true;
    }
    std::function<void()> whenUndone;
    const std::function<void()> whenEnded;
};

TEST_F(VUndoStackTest, IsWholeWhenAnActionEndsThatIsCutOff)
{
    std::vector<int> sizes;
    stack->AddAction(new Ending([&] {
        sizes.push_back(stack->size());
        stack->undo();
        sizes.push_back(stack->setSize(0));
    }));
    for (const char* label : {"A", "B", "C"}) add(stack, label);

    EXPECT_EQ(stack->setSize(3), 0);
    EXPECT_EQ(sizes, (std::vector<int>{3, 0}));
    EXPECT_EQ(taken, "C");
}

TEST_F(VUndoStackTest, MayBeHeldByAnActionThatIsCutOff)
{
    const WeakPtr<VUndoStack> watch = stack;
    RefPtr<VUndoStack> held = stack;
    stack->AddAction(new Ending([held] {}));
    add(stack, "A");
    add(stack, "B");
    held = stack = RefPtr<VUndoStack>();
    ASSERT_TRUE(watch);

    EXPECT_EQ(watch->setSize(1), 1);
    EXPECT_FALSE(watch);
}

TEST_F(VUndoStackTest, MayBeHeldByWhatAnAdditionPushesOffTheGlobalStack)
{
    const WeakPtr<VUndoStack> watch = stack;
    global.AddAction(new Ending([held = stack] {}));
    for (int i = 0; i < 99; ++i) global.AddAction(new Append(taken, "x"));
    stack = RefPtr<VUndoStack>();

    watch->AddAction(new Append(taken, "y"));

    EXPECT_FALSE(watch);
    EXPECT_EQ(global.size(), 100);
}

TEST_F(VUndoStackTest, IsWholeWhenAnActionEndsThatWasAddedByTheOneThatIsUndone)
{
    add(stack, "A");
    const RefPtr<Ending> undone(new Ending([] {}));
    undone->whenUndone = [&] { stack->AddAction(new Ending([&] { stack->setSize(0); })); };
    stack->AddAction(undone);

    EXPECT_TRUE(stack->undo());
    EXPECT_EQ(stack->size(), 0);
    EXPECT_EQ(taken, "");
}

TEST_F(VUndoStackTest, CanBeAnInterfaceOfACube)
{
    EXPECT_EQ(stack->getInterfaceDomain(), typeid(VUndoStack));
}

} // namespace
} // namespace Quorl
