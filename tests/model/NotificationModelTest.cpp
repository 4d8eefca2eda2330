#include <quorl/values/VValue.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValueNotifierList.h>
#include <quorl/values/ValuePool.h>
#include <tests/model/At.h>
#include <tests/model/Moves.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

/// Lists of observers and their variables in pools, against plain vectors and maps. Observers act
/// themselves: they end others, subscribe others and tell further lists.
namespace QuorlTest
{
namespace
{

using Quorl::RefPtr;
using Quorl::ValueNotifier;
using Quorl::ValueNotifierList;
using Quorl::ValuePool;
using Quorl::VValueBase;
using Quorl::WeakPtr;
using Number = Quorl::VValue<int>;

constexpr int kLists = 4;
constexpr int kPools = 3;
constexpr int kObservers = 5;
constexpr int kNone = -1;
constexpr int kFuel = 30;

struct Kinds
{
    enum Kind : int
    {
        Subscribe,      ///< observer `b` to list `a`
        EndObserver,    ///< `b`; a new one takes its place
        Notify,         ///< the observers of list `a` but `b`, set off by list `c`
        Shadow,         ///< list `a` in pool `b`, with a variable or without
        RemoveVariable, ///< of list `a` in pool `b`
        RemoveShadows,  ///< of list `a`
        CopyShadows,    ///< to list `a` from `b`
        EndPool,        ///< `b`; a new one takes its place
        EndList,        ///< `a`; a new one takes its place
        Activate,       ///< pool `a` instead of `b`, not telling observer `c`
        Visit,          ///< the variables and observers of list `a`, at most `b`
        Script,         ///< observer `b` does the next move whenever it is called
        kKinds,
    };
    static constexpr const char* kNames[] = {
        "Subscribe",   "EndObserver", "Notify",  "Shadow",   "RemoveVariable", "RemoveShadows",
        "CopyShadows", "EndPool",     "EndList", "Activate", "Visit",          "Script"};
};

using Move = MoveOf<Kinds>;

/// What an observer is told: its generation and number, the datum, the pool and the caller.
using Told = std::tuple<int, int, int, int>;

class List final : public ValueNotifierList
{
public:
    explicit List(int datum) : value_(new Number(datum)) {}
    const RefPtr<VValueBase>& DefaultValue() const override { return value_; }

private:
    const RefPtr<VValueBase> value_;
};

int datumOf(const RefPtr<VValueBase>& value)
{
    int datum = kNone;
    if (const RefPtr<Number> number = value) number->getValue(datum);
    return datum;
}

class Game
{
public:
    Game()
    {
        for (int list = 0; list < kLists; ++list) makeList(list);
        for (int pool = 0; pool < kPools; ++pool) pools_[at(pool)] = new ValuePool;
        for (int observer = 0; observer < kObservers; ++observer) makeObserver(observer);
    }
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    void play(const std::vector<Move>& moves)
    {
        const Move* scripted = nullptr;
        for (const Move& move : moves)
        {
            for (int number = 0; number < kObservers; ++number) // those that others have ended
                if (expected_[at(number)].number == kNone) makeObserver(number);
            if (scripted)
            {
                observers_[at(scripted->b % kObservers)]->script.push_back(move);
                expected_[at(scripted->b % kObservers)].script.push_back(move);
                scripted = nullptr;
            }
            else if (move.kind == Move::Script)
                scripted = &move;
            else
                make(move);
        }
    }

private:
    class Observer final : public ValueNotifier
    {
    public:
        Observer(Game& game, int number) : game_(game), number_(number) {}
        void valueChanged(const RefPtr<VValueBase>& value, const WeakPtr<ValuePool>& pool,
                          const ValueNotifierList* caller, const Quorl::ValueMap*) override
        {
            game_.told_.emplace_back(number_, datumOf(value), game_.numberOf(pool),
                                     game_.numberOf(caller));
            const std::vector<Move> moves = script; // it may end in one of them
            Game& game = game_;
            for (const Move& move : moves) game.act(move, caller);
        }
        std::vector<Move> script;

    private:
        Game& game_;
        const int number_;
    };

    // The model

    struct ExpectedObserver
    {
        int number = 0; // differs from one that stood in its place before
        std::vector<Move> script;
    };
    struct ExpectedList
    {
        int datum = 0;
        std::vector<int> observers; // numbers
        std::set<int> shadows;      // numbers of pools
        int generation = 0;
    };

    // What is made

    void makeList(int list)
    {
        lists_[at(list)] = new List(data_);
        const int generation = model_[at(list)].generation + 1;
        model_[at(list)] = {data_++, {}, {}, generation};
    }
    void makeObserver(int observer)
    {
        observers_[at(observer)] = new Observer(*this, made_);
        expected_[at(observer)] = {made_++, {}};
    }

    int numberOf(const WeakPtr<ValuePool>& pool) const
    {
        if (!pool) return kNone;
        const auto place = std::ranges::find(pools_, RefPtr<ValuePool>(pool));
        return place == pools_.end() ? -2 : static_cast<int>(place - pools_.begin());
    }
    int numberOf(const ValueNotifierList* list) const
    {
        for (int number = 0; number < kLists; ++number)
            if (lists_[at(number)].rawptr() == list) return number;
        return kNone;
    }
    bool isLive(int observer) const
    {
        return std::ranges::any_of(expected_,
                                   [&](const auto& entry) { return entry.number == observer; });
    }
    /// The pools in the order of their handles, which is that of the kernel's sets.
    std::vector<int> poolsInOrder() const
    {
        std::vector<int> order(kPools);
        for (int pool = 0; pool < kPools; ++pool) order[at(pool)] = pool;
        std::ranges::sort(order, [&](int left, int right) {
            return WeakPtr<ValuePool>(pools_[at(left)]) < WeakPtr<ValuePool>(pools_[at(right)]);
        });
        return order;
    }
    std::vector<int> listsInOrder() const
    {
        std::vector<int> order(kLists);
        for (int list = 0; list < kLists; ++list) order[at(list)] = list;
        std::ranges::sort(order, [&](int left, int right) {
            return WeakPtr<ValueNotifierList>(lists_[at(left)]) <
                   WeakPtr<ValueNotifierList>(lists_[at(right)]);
        });
        return order;
    }
    /// The datum of a list's variable in a pool; none without one.
    int variable(int list, int pool) const
    {
        const auto entry = variables_.find({pool, list});
        return entry == variables_.end() ? kNone : entry->second;
    }

    /// What an observer does in the kernel.
    void act(const Move& move, const ValueNotifierList* caller)
    {
        if (--fuel_ < 0) return;
        const int list = move.a % kLists;
        const int observer = move.b % kObservers;
        switch (move.kind)
        {
            case Move::Subscribe: lists_[at(list)]->addNotifier(observers_[at(observer)]); break;
            case Move::EndObserver: observers_[at(observer)] = {}; break;
            case Move::Notify:
                lists_[at(list)]->notify(lists_[at(list)]->DefaultValue(), {}, {}, caller, nullptr);
                break;
            default: break;
        }
    }
    /// And in the model.
    void actInModel(const Move& move, int caller)
    {
        if (--fuelOfModel_ < 0) return;
        const int list = move.a % kLists;
        ExpectedObserver& observer = expected_[at(move.b % kObservers)];
        switch (move.kind)
        {
            case Move::Subscribe:
                if (observer.number != kNone) model_[at(list)].observers.push_back(observer.number);
                break;
            case Move::EndObserver: observer = {kNone, {}}; break;
            case Move::Notify:
                notifyInModel(list, model_[at(list)].datum, kNone, kNone, caller);
                break;
            default: break;
        }
    }

    void notifyInModel(int list, int datum, int pool, int skip, int caller)
    {
        if (caller == list) return;
        if (caller == kNone) caller = list;
        const std::vector<int>& observers = model_[at(list)].observers; // which may grow
        for (std::size_t place = 0; place < observers.size(); ++place)
        {
            const int observer = observers[place];
            if (!isLive(observer) || observer == skip) continue;
            toldInModel_.emplace_back(observer, datum, pool, caller);
            const std::vector<Move> moves =
                std::ranges::find(expected_, observer, &ExpectedObserver::number)->script;
            for (const Move& move : moves) actInModel(move, caller);
        }
    }

    void make(const Move& move)
    {
        const int list = move.a % kLists;
        const int pool = move.b % kPools;
        const int observer = move.b % kObservers;
        fuel_ = fuelOfModel_ = kFuel;
        switch (move.kind)
        {
            case Move::Subscribe:
                RC_ASSERT(lists_[at(list)]->addNotifier(observers_[at(observer)]));
                model_[at(list)].observers.push_back(expected_[at(observer)].number);
                break;
            case Move::EndObserver: makeObserver(observer); break;
            case Move::Notify: notify(list, observer, move.c % (kLists + 1)); break;
            case Move::Shadow: shadow(list, pool, move.c % 2 == 0); break;
            case Move::RemoveVariable:
                pools_[at(pool)]->removeVariable(lists_[at(list)]);
                variables_.erase({pool, list});
                break;
            case Move::RemoveShadows: removeShadows(list); break;
            case Move::CopyShadows: copyShadows(list, move.b % kLists); break;
            case Move::EndPool: endPool(pool); break;
            case Move::EndList: endList(list); break;
            case Move::Activate: activate(move.a % kPools, move.b % (kPools + 1), move.c); break;
            default: break;
        }
        compare(list, observer, move.b);
    }

    void notify(int list, int skip, int caller)
    {
        const bool hasCaller = caller < kLists;
        const RefPtr<VValueBase>& value = lists_[at(list)]->DefaultValue();
        const int skipped = expected_[at(skip)].number;
        lists_[at(list)]->notify(value, {}, observers_[at(skip)],
                                 hasCaller ? lists_[at(caller)].rawptr() : nullptr, nullptr);
        notifyInModel(list, model_[at(list)].datum, kNone, skipped, hasCaller ? caller : kNone);
    }

    void shadow(int list, int pool, bool withVariable)
    {
        RC_ASSERT(lists_[at(list)]->addShadow(pools_[at(pool)]));
        model_[at(list)].shadows.insert(pool);
        if (!withVariable) return;
        pools_[at(pool)]->createVariable(lists_[at(list)], RefPtr<VValueBase>(new Number(data_)));
        variables_[{pool, list}] = data_++;
    }

    void removeShadows(int list)
    {
        RC_ASSERT(lists_[at(list)]->removeAllShadows());
        for (const int pool : model_[at(list)].shadows) variables_.erase({pool, list});
    }

    void copyShadows(int list, int source)
    {
        int expected = 0;
        const std::set<int> shadows = model_[at(source)].shadows;
        for (const int pool : shadows)
        {
            const int datum = variable(source, pool);
            if (datum == kNone) continue;
            model_[at(list)].shadows.insert(pool);
            variables_[{pool, list}] = datum;
            ++expected;
        }
        RC_ASSERT(lists_[at(list)]->copyShadows(lists_[at(source)]) == expected);
    }

    void endPool(int pool)
    {
        pools_[at(pool)] = new ValuePool;
        for (int list = 0; list < kLists; ++list)
        {
            model_[at(list)].shadows.erase(pool);
            variables_.erase({pool, list});
        }
    }

    void endList(int list)
    {
        makeList(list); // its variables stay in their pools, where nobody finds them
        for (int pool = 0; pool < kPools; ++pool) variables_.erase({pool, list});
    }

    void activate(int pool, int old, int skip)
    {
        const bool hasOld = old < kPools;
        const int skipped = skip % kObservers;
        const int skippedNumber = expected_[at(skipped)].number;
        pools_[at(pool)]->activate(hasOld ? pools_[at(old)] : RefPtr<ValuePool>(),
                                   observers_[at(skipped)], nullptr);
        if (old == pool) return;
        for (const int list : listsInOrder())
            if (hasOld && variable(list, old) != kNone && variable(list, pool) == kNone)
                notifyInModel(list, model_[at(list)].datum, kNone, skippedNumber, kNone);
        for (const int list : listsInOrder())
            if (const int datum = variable(list, pool); datum != kNone)
                notifyInModel(list, datum, pool, skippedNumber, kNone);
    }

    void compare(int list, int observer, int most)
    {
        RC_ASSERT(told_ == toldInModel_);
        told_.clear();
        toldInModel_.clear();
        const ExpectedObserver& expected = expected_[at(observer)];
        RC_ASSERT(lists_[at(list)]->contains(observers_[at(observer)]) ==
                  (expected.number != kNone &&
                   std::ranges::count(model_[at(list)].observers, expected.number) > 0));
        for (int each = 0; each < kLists; ++each)
            for (int pool = 0; pool < kPools; ++pool)
                RC_ASSERT(datumOf(pools_[at(pool)]->findVariable(lists_[at(each)])) ==
                          variable(each, pool));
        visitVariables(list, most);
        visitObservers(list, most);
    }

    void visitVariables(int list, int most) const
    {
        struct Note final : Quorl::ValueShadowIterator
        {
            bool apply(const RefPtr<ValuePool>& /*pool*/, const RefPtr<VValueBase>& value) override
            {
                data.push_back(datumOf(value));
                return static_cast<int>(data.size()) <= most;
            }
            std::vector<int> data;
            int most = 0;
        } note;
        note.most = most;
        const int answer = lists_[at(list)]->iterateShadows(note);
        std::vector<int> expected;
        for (const int pool : poolsInOrder())
            if (model_[at(list)].shadows.contains(pool) && variable(list, pool) != kNone &&
                static_cast<int>(expected.size()) <= most)
                expected.push_back(variable(list, pool));
        RC_ASSERT(note.data == expected);
        RC_ASSERT(answer == std::min(most, static_cast<int>(expected.size())));
    }

    void visitObservers(int list, int most) const
    {
        struct Count final : Quorl::NotifiedValueIterator
        {
            bool apply(const RefPtr<ValueNotifier>& /*notifier*/) override
            {
                return ++visits <= most;
            }
            int visits = 0;
            int most = 0;
        } count;
        count.most = most;
        const int answer = lists_[at(list)]->iterateValues(count);
        const int live = static_cast<int>(std::ranges::count_if(
            model_[at(list)].observers, [&](int observer) { return isLive(observer); }));
        RC_ASSERT(count.visits == std::min(live, most + 1));
        RC_ASSERT(answer == std::min(live, most));
    }

    std::array<RefPtr<List>, kLists> lists_;
    std::array<RefPtr<ValuePool>, kPools> pools_;
    std::array<RefPtr<Observer>, kObservers> observers_;
    std::vector<Told> told_;

    std::array<ExpectedList, kLists> model_;
    std::array<ExpectedObserver, kObservers> expected_;
    std::map<std::pair<int, int>, int> variables_; // by pool and list
    std::vector<Told> toldInModel_;

    int data_ = 0;
    int made_ = 0;
    int fuel_ = 0;
    int fuelOfModel_ = 0;
};

RC_GTEST_PROP(NotificationModel, TellsWhomListsTell, ())
{
    const auto kind = rc::gen::weightedOneOf<int>({{3, rc::gen::just<int>(Move::Subscribe)},
                                                   {2, rc::gen::just<int>(Move::Shadow)},
                                                   {2, rc::gen::just<int>(Move::Notify)},
                                                   {2, rc::gen::just<int>(Move::Activate)},
                                                   {2, rc::gen::just<int>(Move::Script)},
                                                   {4, rc::gen::inRange<int>(0, Move::kKinds)}});
    const auto number = rc::gen::inRange(0, 20);
    Game().play(anyMoves<Move>(kind, number, number, number));
}

} // namespace
} // namespace QuorlTest
