#include <quorl/values/ValueNotifierList.h>

#include <quorl/foundation/Ageable.h>
#include <quorl/services/VUndoAction.h>
#include <quorl/services/VUndoStack.h>
#include <quorl/values/VValue.h>
#include <quorl/values/ValueActionBase.h>
#include <quorl/values/ValuePool.h>
#include <tests/values/ValueTestTypes.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::makeNumber;
using QuorlTest::makeObserver;
using QuorlTest::Observer;

RefPtr<ValueNotifierList> makeList()
{
    return RefPtr<ValueNotifierList>(new ValueNotifierList);
}

RefPtr<ValuePool> makePool()
{
    return RefPtr<ValuePool>(new ValuePool);
}

void notifyAll(const ValueNotifierList& list, const RefPtr<VValueBase>& value,
               const ValueNotifierList* caller = nullptr,
               const WeakPtr<ValueNotifier>& skip = WeakPtr<ValueNotifier>())
{
    list.notify(value, WeakPtr<ValuePool>(), skip, caller, nullptr);
}

TEST(ValueNotifierList, CallsNobodyForAChangeThatItSetOffItself)
{
    const auto list = makeList();
    const auto observer = makeObserver();
    list->addNotifier(observer);

    notifyAll(*list, makeNumber(1), list.rawptr());

    EXPECT_TRUE(observer->calls.empty());
}

TEST(ValueNotifierList, NamesItselfAsCallerWhereNoneIsGiven)
{
    const auto list = makeList();
    const auto other = makeList();
    const auto observer = makeObserver();
    list->addNotifier(observer);

    notifyAll(*list, makeNumber(1));
    notifyAll(*list, makeNumber(2), other.rawptr());

    ASSERT_EQ(observer->calls.size(), 2U);
    EXPECT_EQ(observer->calls[0].caller, list.rawptr());
    EXPECT_EQ(observer->calls[1].caller, other.rawptr());
}

TEST(ValueNotifierList, HandsItsArgumentsOnAsTheyAre)
{
    const auto list = makeList();
    const auto observer = makeObserver();
    list->addNotifier(observer);
    const auto pool = makePool();
    const ValueMap changes;

    list->notify(makeNumber(7), pool, WeakPtr<ValueNotifier>(), nullptr, &changes);

    EXPECT_EQ(observer->calls.at(0).text, "7");
    EXPECT_EQ(observer->calls.at(0).pool, pool);
    EXPECT_EQ(observer->calls.at(0).changes, &changes);
}

TEST(ValueNotifierList, SkipsTheSourceOfAChangeAndCallsTheOthersInOrderOfAddition)
{
    const auto list = makeList();
    std::string order;
    std::vector<RefPtr<Observer>> observers;
    for (const char name : {'a', 'b', 'c'})
    {
        observers.push_back(makeObserver());
        observers.back()->whenCalled = [&order, name] { order += name; };
        list->addNotifier(observers.back());
    }

    notifyAll(*list, makeNumber(1), nullptr, observers[1]);

    EXPECT_EQ(order, "ac");
}

TEST(ValueNotifierList, CallsAnObserverAsOftenAsItWasAdded)
{
    const auto list = makeList();
    const auto observer = makeObserver();
    list->addNotifier(observer);
    list->addNotifier(observer);

    notifyAll(*list, makeNumber(1));

    EXPECT_EQ(observer->calls.size(), 2U);
}

TEST(ValueNotifierList, PassesOverObserversThatHaveEnded)
{
    const auto list = makeList();
    const auto last = makeObserver();
    WeakPtr<ValueNotifier> dead;
    {
        const auto shortLived = makeObserver();
        dead = shortLived;
        EXPECT_TRUE(list->addNotifier(shortLived));
    }
    list->addNotifier(last);

    notifyAll(*list, makeNumber(1));

    EXPECT_EQ(last->calls.size(), 1U);
    EXPECT_FALSE(list->addNotifier(dead));
    EXPECT_FALSE(list->addNotifier(WeakPtr<ValueNotifier>()));
    EXPECT_FALSE(list->contains(dead));
    EXPECT_TRUE(list->contains(last));
    EXPECT_FALSE(list->contains(makeObserver()));
}

TEST(ValueNotifierList, TellsAnObserverThatIsAddedMeanwhileInTheSameWalk)
{
    const auto list = makeList();
    const auto first = makeObserver();
    const auto late = makeObserver();
    first->whenCalled = [&] { list->addNotifier(late); };
    list->addNotifier(first);

    notifyAll(*list, makeNumber(1));

    EXPECT_EQ(late->calls.size(), 1U);
}

TEST(ValueNotifierList, GoesOnWhenAnObserverEndsAnotherInItsCall)
{
    const auto list = makeList();
    const auto first = makeObserver();
    auto second = makeObserver();
    const auto third = makeObserver();
    first->whenCalled = [&] { second = RefPtr<Observer>(); };
    for (const auto& observer : {first, second, third}) list->addNotifier(observer);

    notifyAll(*list, makeNumber(1));

    EXPECT_FALSE(second);
    EXPECT_EQ(third->calls.size(), 1U);
}

TEST(ValueNotifierList, SurvivesItsOwnEndInTheCallOfAnObserver)
{
    auto list = makeList();
    const auto first = makeObserver();
    const auto second = makeObserver();
    first->whenCalled = [&] { list = RefPtr<ValueNotifierList>(); };
    list->addNotifier(first);
    list->addNotifier(second);

    notifyAll(*list, makeNumber(1));

    EXPECT_FALSE(list);
    EXPECT_EQ(second->calls.size(), 1U);
}

TEST(ValueNotifierList, HasNoDefaultValueAndIgnoresATouch)
{
    const ValueNotifierList list;
    const Ageable before = Ageable::GlobalTime;
    list.touch();

    EXPECT_FALSE(list.DefaultValue());
    EXPECT_EQ(Ageable::GlobalTime, before);
}

TEST(ValueNotifierList, VisitsLiveObserversAndCountsTheTrueAnswers)
{
    struct Visit final : NotifiedValueIterator
    {
        bool apply(const RefPtr<ValueNotifier>& notifier) override
        {
            seen.push_back(notifier);
            return seen.size() < 2;
        }
        std::vector<RefPtr<ValueNotifier>> seen;
    };
    const auto list = makeList();
    const auto first = makeObserver();
    list->addNotifier(first);
    list->addNotifier(makeObserver()); // dead at once
    const auto second = makeObserver();
    list->addNotifier(second);
    Visit visit;

    EXPECT_EQ(list->iterateValues(visit), 1);
    ASSERT_EQ(visit.seen.size(), 2U);
    EXPECT_EQ(visit.seen[1], second);
}

TEST(ValueNotifierListShadows, LoseTheirVariablesButStayNoted)
{
    struct Count final : ValueShadowIterator
    {
        bool apply(const RefPtr<ValuePool>&, const RefPtr<VValueBase>&) override { return true; }
    };
    const auto list = makeList();
    const auto pool = makePool();
    pool->createVariable(list, makeNumber(1));
    Count count;
    EXPECT_TRUE(list->addShadow(pool));
    EXPECT_EQ(list->iterateShadows(count), 1);

    EXPECT_TRUE(list->removeAllShadows());
    EXPECT_FALSE(pool->findVariable(list));
    EXPECT_EQ(list->iterateShadows(count), 0);

    EXPECT_TRUE(list->addShadow(pool));
    pool->createVariable(list, makeNumber(2));
    EXPECT_EQ(list->iterateShadows(count), 1) << "noted once, not twice";
}

TEST(ValueNotifierListShadows, AreVisitedWhereBothPoolAndVariableAreAlive)
{
    struct Texts final : ValueShadowIterator
    {
        bool apply(const RefPtr<ValuePool>&, const RefPtr<VValueBase>& variable) override
        {
            texts += variable->Text();
            return false;
        }
        string texts;
    };
    const auto list = makeList();
    const auto empty = makePool();
    const auto full = makePool();
    full->createVariable(list, makeNumber(5));
    list->addShadow(makePool()); // dead at once
    list->addShadow(empty);
    list->addShadow(full);
    Texts visit;

    EXPECT_EQ(list->iterateShadows(visit), 0) << "the visit that answered false does not count";
    EXPECT_EQ(visit.texts, "5");
}

TEST(ValueNotifierListShadows, AreCopiedWithThePresentClockAsAge)
{
    const auto source = makeList();
    const auto target = makeList();
    const auto pool = makePool();
    pool->createVariable(source, makeNumber(3));
    source->addShadow(pool);
    source->addShadow(makePool());
    Ageable().touch();

    EXPECT_EQ(target->copyShadows(source), 1);

    const RefPtr<VValueBase> variable = pool->findVariable(target);
    ASSERT_TRUE(variable);
    EXPECT_EQ(variable->Text(), "3");
    EXPECT_FALSE(variable == pool->findVariable(source));
    EXPECT_EQ(variable->age(), Ageable::GlobalTime);
}

TEST(ValueNotifierListShadows, AreNotCopiedWhereAVariableHasNoCopy)
{
    struct Unique final : VValue<int>
    {
        Unique() : VValue<int>(1) {}
        RefPtr<VValueBase> copy() const override { return {}; }
    };
    struct Count final : ValueShadowIterator
    {
        bool apply(const RefPtr<ValuePool>&, const RefPtr<VValueBase>&) override { return true; }
    };
    const auto source = makeList();
    const auto target = makeList();
    const auto pool = makePool();
    pool->createVariable(source, RefPtr<VValueBase>(new Unique));
    source->addShadow(pool);

    EXPECT_EQ(target->copyShadows(source), 0);
    EXPECT_EQ(pool->findVariable(target).referer, nullptr);
    pool->createVariable(target, makeNumber(1));
    Count count;
    EXPECT_EQ(target->iterateShadows(count), 0) << "the pool is not noted";
}

TEST(ValueNotifierListShadows, AreNotCopiedFromNobodyNorFromAListWithoutAny)
{
    const auto target = makeList();

    EXPECT_EQ(target->copyShadows(WeakPtr<ValueNotifierList>()), 0);
    EXPECT_EQ(target->copyShadows(makeList()), 0);
}

class Note final : public VUndoAction
{
public:
    explicit Note(string& log) : VUndoAction("note"), log_(log) {}
    bool undo() override
    {
        log_ += "u";
        return true;
    }

private:
    string& log_;
};

TEST(ValueNotifierListUndo, HasNoStackBeforeTheFirstAction)
{
    const auto list = makeList();
    string log;

    EXPECT_FALSE(list->UndoStack());
    EXPECT_FALSE(list->undo());
    list->AddUndoAction(new Note(log), 0);
    EXPECT_TRUE(list->UndoStack());
    EXPECT_TRUE(list->undo());
    EXPECT_EQ(log, "u");
    EXPECT_FALSE(list->undo());
}

TEST(ValueNotifierListUndo, CutsTheStackOnlyForASizeAboveZero)
{
    const auto list = makeList();
    string log;
    for (int i = 0; i < 3; ++i) list->AddUndoAction(new Note(log), 0);
    list->AddUndoAction(new Note(log), -1);
    EXPECT_EQ(list->UndoStack()->size(), 4);

    list->AddUndoAction(new Note(log), 2);

    EXPECT_EQ(list->UndoStack()->size(), 2);
}

/// What actions do that take changes of a list back.
struct HoldsList final : VUndoAction
{
    explicit HoldsList(const RefPtr<ValueNotifierList>& changed)
        : VUndoAction("holds"), list(changed)
    {
    }
    bool undo() override { return true; }
    const RefPtr<ValueNotifierList> list;
};

TEST(ValueNotifierListUndo, MayBeLetGoOfByAnActionThatIsCutOff)
{
    auto list = makeList();
    const WeakPtr<ValueNotifierList> watch = list;
    string log;
    list->AddUndoAction(new HoldsList(list), 0);
    list = {};
    ASSERT_TRUE(watch) << "its history keeps it";

    watch->AddUndoAction(new Note(log), 1);

    EXPECT_FALSE(watch);
}

TEST(ValueNotifierListUndo, MayBeLetGoOfByTheActionThatIsUndone)
{
    auto list = makeList();
    const WeakPtr<ValueNotifierList> watch = list;
    list->AddUndoAction(new HoldsList(list), 0);
    list = {};

    EXPECT_TRUE(watch->undo());
    EXPECT_FALSE(watch);
}

TEST(ValueActionBase, GetsTheArgumentsOfANotificationAsTheyAre)
{
    struct Action final : ValueActionBase
    {
        void action(const RefPtr<VValueBase>& value, const WeakPtr<ValuePool>& pool,
                    const ValueNotifierList* caller, const ValueMap* changes) override
        {
            gotten = value->Text();
            gottenPool = pool;
            gottenCaller = caller;
            gottenChanges = changes;
        }
        string gotten;
        WeakPtr<ValuePool> gottenPool;
        const ValueNotifierList* gottenCaller = nullptr;
        const ValueMap* gottenChanges = nullptr;
    };
    const RefPtr<Action> action(new Action);
    const auto list = makeList();
    const auto pool = makePool();
    const ValueMap changes;
    list->addNotifier(action);

    list->notify(makeNumber(4), pool, WeakPtr<ValueNotifier>(), nullptr, &changes);

    EXPECT_EQ(action->gotten, "4");
    EXPECT_EQ(action->gottenPool, pool);
    EXPECT_EQ(action->gottenCaller, list.rawptr());
    EXPECT_EQ(action->gottenChanges, &changes);
}

TEST(ValueNotifierList, SurvivesItsOwnEndInTheCallOfAVisitor)
{
    struct End final : ValueShadowIterator, NotifiedValueIterator
    {
        bool apply(const RefPtr<ValuePool>&, const RefPtr<VValueBase>&) override
        {
            list = RefPtr<ValueNotifierList>();
            return true;
        }
        bool apply(const RefPtr<ValueNotifier>&) override
        {
            list = RefPtr<ValueNotifierList>();
            return true;
        }
        RefPtr<ValueNotifierList> list;
    } end;
    end.list = makeList();
    const auto first = makeObserver();
    const auto second = makeObserver();
    end.list->addNotifier(first);
    end.list->addNotifier(second);
    EXPECT_EQ(end.list->iterateValues(end), 2);
    EXPECT_FALSE(end.list);

    end.list = makeList();
    const auto pool = makePool();
    const auto other = makePool();
    for (const auto& each : {pool, other})
    {
        end.list->addShadow(each);
        each->createVariable(end.list, makeNumber(1));
    }
    EXPECT_EQ(end.list->iterateShadows(end), 2);
    EXPECT_FALSE(end.list);
}

TEST(ValueNotifierListShadows, SurviveTheEndOfTheListByAVariableThatEnds)
{
    class Last final : public VValue<int>
    {
    public:
        ~Last() override { owner = RefPtr<ValueNotifierList>(); }
        RefPtr<ValueNotifierList> owner;
    };
    const auto pool = makePool();
    const auto other = makePool();
    RefPtr<ValueNotifierList> list = makeList();
    const WeakPtr<ValueNotifierList> watch = list;
    for (const auto& each : {pool, other})
    {
        const RefPtr<Last> value(new Last);
        value->owner = list;
        each->createVariable(list, value);
        list->addShadow(each);
    }
    list = RefPtr<ValueNotifierList>();
    ASSERT_TRUE(watch);
    EXPECT_TRUE(watch->removeAllShadows());
    EXPECT_FALSE(watch);
}

} // namespace
} // namespace Quorl
