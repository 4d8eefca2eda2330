#include <quorl/tasks/VScheduler.h>
#include <tests/model/Moves.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

/// The scheduler against two plain tables.
namespace QuorlTest
{
namespace
{

using Quorl::RefPtr;
using Quorl::ValuePool;
using Quorl::VScheduler;
using Quorl::WeakPtr;

constexpr int kObjects = 5;
constexpr int kPools = 3; // the last stands for none
constexpr int kNoPool = -1;
constexpr int kMostDeeds = 12; // of objects in one move, lest they keep each other busy for ever

enum Behaviour : int
{
    kAnswersFalse,
    kAnswersTrue,
    kThrows,
    kSchedules, ///< another object, or itself
    kExecutes,  ///< what is scheduled, from within
    kBehaviours,
};

struct Kinds
{
    enum Kind : int
    {
        Schedule, ///< object `a` with precision `b` in pool `c`
        Execute,  ///< with the factor `b`
        Behave,   ///< object `a` as `b`, towards object `c`, from now on
        EndPool,  ///< pool `a`; a new one takes its place
        Drop,     ///< object `a`, which may be on a list still; a new one takes its place
        kKinds,
    };
    static constexpr const char* kNames[] = {"Schedule", "Execute", "Behave", "EndPool", "Drop"};
};

using Move = MoveOf<Kinds>;

/// What an object was asked: its number, the precision, the number of the context.
using Asked = std::tuple<int, double, int>;

/// What objects do when they are asked, common to both sides of the game.
struct Behaviours
{
    Behaviour of[kObjects] = {};
    int towards[kObjects] = {};
};

// The model

class Model
{
public:
    explicit Model(int running) : running_(running) {}

    /// \param rank the place of the object in the order of handles.
    bool schedule(std::uintptr_t rank, int place, int object, double precision, int pool)
    {
        (isAllowed_ ? coming_ : deferred_)[rank] = {place, object, precision, pool};
        return isAllowed_;
    }

    /// \return none if an object threw.
    std::optional<int> execute(double factor)
    {
        ++running_;
        isAllowed_ = false;
        int modified = 0;
        while (!coming_.empty())
        {
            const Entry entry = coming_.begin()->second;
            coming_.erase(coming_.begin());
            const auto answer = ask(entry, factor);
            if (!answer)
            {
                isAllowed_ = true;
                --running_;
                return {};
            }
            modified += *answer ? 1 : 0;
        }
        isAllowed_ = true;
        coming_.swap(deferred_);
        running_ = -1; // the counter of the other table, which is 0, less one
        return modified;
    }

    void endPool(int pool)
    {
        for (auto* const table : {&coming_, &deferred_})
            for (auto& [rank, entry] : *table)
                if (entry.pool == pool) entry.pool = kNoPool;
    }

    bool holds(int object) const
    {
        for (const auto* const table : {&coming_, &deferred_})
            for (const auto& [rank, entry] : *table)
                if (entry.object == object) return true;
        return false;
    }

    std::vector<int> listed() const
    {
        std::vector<int> objects;
        for (const auto& [rank, entry] : coming_) objects.push_back(entry.object);
        return objects;
    }

    int running() const { return running_; }

    std::vector<Asked> asked;
    Behaviours behaviours;
    int deedsLeft = 0;
    std::vector<std::pair<std::uintptr_t, int>> present; // rank and number of the object in a place

private:
    struct Entry
    {
        int place;
        int object;
        double precision;
        int pool;
    };

    std::optional<bool> ask(const Entry& entry, double factor)
    {
        asked.emplace_back(entry.object, entry.precision * factor, entry.pool);
        if (--deedsLeft < 0) return false;
        switch (behaviours.of[entry.place])
        {
            case kThrows: return {};
            case kSchedules: {
                const int other = behaviours.towards[entry.place];
                return schedule(present[other].first, other, present[other].second, 1.0, kNoPool);
            }
            case kExecutes:
                if (const auto modified = execute(1.0)) return *modified > 0;
                return {};
            default: return behaviours.of[entry.place] == kAnswersTrue;
        }
    }

    std::map<std::uintptr_t, Entry> coming_;
    std::map<std::uintptr_t, Entry> deferred_;
    bool isAllowed_ = true;
    int running_;
};

// The kernel

class Game
{
public:
    Game() : model_(VScheduler::isRunning())
    {
        for (auto& pool : pools_) renew(pool);
        pools_[kPools - 1] = {};
        model_.present.resize(kObjects);
        for (int place = 0; place < kObjects; ++place) renewObject(place);
    }
    ~Game()
    {
        deedsLeft_ = 0;
        while (!VScheduler::getScheduledList().empty()) VScheduler::execute(1.0);
        VScheduler::execute(1.0); // what was deferred
        while (!VScheduler::getScheduledList().empty()) VScheduler::execute(1.0);
    }
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    void play(const std::vector<Move>& moves)
    {
        for (const Move& move : moves)
        {
            deedsLeft_ = model_.deedsLeft = kMostDeeds;
            perform(move);
            compare();
        }
    }

private:
    struct Pool
    {
        RefPtr<ValuePool> pool;
        int number = kNoPool;
    };

    class Object final : public Node
    {
    public:
        Object(Game& game, int place, int number)
            : Node("object"), game_(game), place_(place), number_(number)
        {
        }
        bool request(Quorl::VRequest& request, double precision, const Quorl::WeakVObjectPtr&,
                     const Quorl::WeakVObjectPtr&) override
        {
            return game_.ask(place_, number_, precision, request.Pool);
        }

    private:
        Game& game_;
        const int place_;
        const int number_;
    };

    void perform(const Move& move)
    {
        switch (move.kind)
        {
            case Move::Schedule: schedule(move.a % kObjects, move.b, move.c % kPools); break;
            case Move::Execute: execute(move.b); break;
            case Move::Behave: behave(move.a % kObjects, move.b, move.c % kObjects); break;
            case Move::EndPool: endPool(pools_[move.a % (kPools - 1)]); break;
            default: renewObject(move.a % kObjects); break;
        }
    }

    void schedule(int place, int precision, int pool)
    {
        const auto& [rank, number] = model_.present[place];
        const bool expected = model_.schedule(rank, place, number, precision, pools_[pool].number);
        RC_ASSERT(objects_[place]->schedule(precision, pools_[pool].pool) == expected);
    }

    void execute(int factor)
    {
        std::optional<int> modified; // none if an object threw
        try
        {
            modified = VScheduler::execute(factor * 0.5);
        }
        catch (const std::runtime_error&)
        {
        }
        RC_ASSERT(modified == model_.execute(factor * 0.5));
    }

    void behave(int place, int behaviour, int towards)
    {
        model_.behaviours.of[place] = static_cast<Behaviour>(behaviour % kBehaviours);
        model_.behaviours.towards[place] = towards;
    }

    void endPool(Pool& pool)
    {
        model_.endPool(pool.number);
        renew(pool);
    }

    void renew(Pool& pool) { pool = {makePool(), poolsMade_++}; }

    void renewObject(int place)
    {
        objects_[place] = new Object(*this, place, static_cast<int>(lives_.size()));
        objects_[place]->Quorl::VManagedObject::remove(); // the registry would keep it
        model_.present[place] = {reinterpret_cast<std::uintptr_t>(objects_[place].referer),
                                 static_cast<int>(lives_.size())};
        lives_.emplace_back(objects_[place]);
    }

    bool ask(int place, int number, double precision, const RefPtr<ValuePool>& pool)
    {
        int context = kNoPool;
        for (const Pool& known : pools_)
            if (pool && known.pool == pool) context = known.number;
        asked_.emplace_back(number, precision, context);
        if (--deedsLeft_ < 0) return false;
        switch (model_.behaviours.of[place])
        {
            case kThrows: throw std::runtime_error("not to be asked");
            case kSchedules: return objects_[model_.behaviours.towards[place]]->schedule(1.0, {});
            case kExecutes: return VScheduler::execute(1.0) > 0;
            default: return model_.behaviours.of[place] == kAnswersTrue;
        }
    }

    void compare()
    {
        RC_ASSERT(asked_ == model_.asked);
        RC_ASSERT(VScheduler::isRunning() == model_.running());
        std::vector<int> listed;
        for (const WeakPtr<Quorl::VObject>& entry : VScheduler::getScheduledList())
            for (std::size_t number = 0; number < lives_.size(); ++number)
                if (lives_[number] == entry) listed.push_back(static_cast<int>(number));
        RC_ASSERT(listed == model_.listed());
        for (int number = 0; number < static_cast<int>(lives_.size()); ++number)
            RC_ASSERT(!!lives_[number] == (isPresent(number) || model_.holds(number)));
    }

    bool isPresent(int number) const
    {
        for (const auto& [rank, present] : model_.present)
            if (present == number) return true;
        return false;
    }

    Model model_;
    int poolsMade_ = 0;
    Pool pools_[kPools];
    RefPtr<Object> objects_[kObjects];
    std::vector<WeakPtr<Quorl::VObject>> lives_; // of all objects that were, by their numbers
    std::vector<Asked> asked_;
    int deedsLeft_ = 0;
};

RC_GTEST_PROP(SchedulerModel, RunsWhatTwoTablesTell, ())
{
    const auto kind = rc::gen::weightedOneOf<int>({{5, rc::gen::just<int>(Move::Schedule)},
                                                   {3, rc::gen::just<int>(Move::Execute)},
                                                   {3, rc::gen::just<int>(Move::Behave)},
                                                   {1, rc::gen::inRange<int>(0, Move::kKinds)}});
    Game().play(anyMoves<Move>(kind, rc::gen::inRange(0, 60), rc::gen::inRange(0, 60),
                               rc::gen::inRange(0, 60)));
}

} // namespace
} // namespace QuorlTest
