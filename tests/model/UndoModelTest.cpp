#include <quorl/services/VUndoStack.h>
#include <tests/model/Moves.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <deque>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// Stacks of undo actions, and the global one, against plain queues.
namespace QuorlTest
{
namespace
{

using Quorl::RefPtr;
using Quorl::VUndoAction;
using Quorl::VUndoStack;

constexpr int kStacks = 3;
constexpr int kGlobal = kStacks; // behind the others
constexpr std::size_t kMostGlobal = 100;

enum Outcome : int
{
    kAnswersFalse,
    kAnswersTrue,
    kThrows,
};

struct Kinds
{
    enum Kind : int
    {
        Add,  ///< to stack `a` an action with the outcome `b`
        Undo, ///< the newest action of stack `a`
        Cut,  ///< stack `a` to one less than `b`
        End,  ///< stack `a`; a new one takes its place
        kKinds,
    };
    static constexpr const char* kNames[] = {"Add", "Undo", "Cut", "End"};
};

using Move = MoveOf<Kinds>;

/// An entry of a queue: an action, or the redirection to a stack of a generation.
struct Entry
{
    int action = -1;
    int outcome = kAnswersTrue;
    int stack = -1;
    int generation = 0;
};

class Action final : public VUndoAction
{
public:
    Action(std::vector<int>& undone, int number, int outcome)
        : VUndoAction(std::to_string(number)), undone_(undone), number_(number), outcome_(outcome)
    {
    }
    bool undo() override
    {
        undone_.push_back(number_);
        if (outcome_ == kThrows) throw std::runtime_error("not to be undone");
        return outcome_ == kAnswersTrue;
    }

private:
    std::vector<int>& undone_;
    const int number_;
    const int outcome_;
};

class Game
{
public:
    Game() : global_(VUndoStack::GlobalUndoStack())
    {
        global_.setSize(0);
        for (auto& stack : stacks_) stack = new VUndoStack;
    }
    ~Game() { global_.setSize(0); }
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    void play(const std::vector<Move>& moves)
    {
        for (const Move& move : moves)
        {
            perform(move);
            RC_ASSERT(undone_ == expected_);
            for (int stack = 0; stack <= kGlobal; ++stack)
                RC_ASSERT(at(stack).size() == static_cast<int>(queues_[stack].size()));
        }
    }

private:
    VUndoStack& at(int stack) { return stack == kGlobal ? global_ : *stacks_[stack]; }

    void perform(const Move& move)
    {
        switch (move.kind)
        {
            case Move::Add: add(move.a, move.b % 3); break;
            case Move::Undo: undo(move.a); break;
            case Move::Cut: cut(move.a, move.b - 1); break;
            default: end(move.a); break;
        }
    }

    void add(int stack, int outcome)
    {
        const int number = actions_++;
        at(stack).AddAction(RefPtr<VUndoAction>(new Action(undone_, number, outcome)));
        queues_[stack].push_front({number, outcome, -1, 0});
        if (stack == kGlobal) return;
        queues_[kGlobal].push_front({-1, 0, stack, generations_[stack]});
        while (queues_[kGlobal].size() > kMostGlobal) queues_[kGlobal].pop_back();
    }

    void undo(int stack)
    {
        std::optional<bool> answer; // none where an action threw
        try
        {
            answer = at(stack).undo();
        }
        catch (const std::runtime_error&)
        {
        }
        RC_ASSERT(answer == undoInModel(stack));
    }

    std::optional<bool> undoInModel(int stack)
    {
        std::deque<Entry>& queue = queues_[stack];
        if (queue.empty()) return false;
        const Entry newest = queue.front();
        std::optional<bool> answer;
        if (newest.action >= 0)
        {
            expected_.push_back(newest.action);
            if (newest.outcome != kThrows) answer = newest.outcome == kAnswersTrue;
        }
        else
            answer = newest.generation == generations_[newest.stack] ? undoInModel(newest.stack)
                                                                     : std::optional(false);
        if (answer) queue.pop_front();
        return answer;
    }

    void cut(int stack, int size)
    {
        const int answer = at(stack).setSize(size);
        std::deque<Entry>& queue = queues_[stack];
        while (size >= 0 && static_cast<int>(queue.size()) > size) queue.pop_back();
        RC_ASSERT(answer == (size < 0 ? -1 : static_cast<int>(queue.size())));
    }

    /// Another one stands in its place. What the global stack has of the old one stays behind.
    void end(int stack)
    {
        if (stack == kGlobal) return;
        stacks_[stack] = new VUndoStack;
        queues_[stack].clear();
        ++generations_[stack];
    }

    VUndoStack& global_;
    RefPtr<VUndoStack> stacks_[kStacks];
    std::deque<Entry> queues_[kStacks + 1];
    int generations_[kStacks] = {};
    int actions_ = 0;
    std::vector<int> undone_;
    std::vector<int> expected_;
};

RC_GTEST_PROP(UndoModel, TakesBackWhatQueuesTell, ())
{
    const auto kind = rc::gen::weightedOneOf<int>({{5, rc::gen::just<int>(Move::Add)},
                                                   {3, rc::gen::just<int>(Move::Undo)},
                                                   {1, rc::gen::inRange<int>(0, Move::kKinds)}});
    Game().play(anyMoves<Move>(kind, rc::gen::inRange(0, kStacks + 1), rc::gen::inRange(0, 12),
                               rc::gen::just(0)));
}

} // namespace
} // namespace QuorlTest
