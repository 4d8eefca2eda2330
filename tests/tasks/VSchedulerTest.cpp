#include <quorl/foundation/Profiler.h>
#include <quorl/tasks/VScheduler.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <stdexcept>

namespace Quorl
{
namespace
{

using QuorlTest::makePool;
using QuorlTest::Node;
using testing::ElementsAre;
using testing::IsEmpty;

/// Notes each request, and does what a test tells it.
class Asked final : public Node
{
public:
    using Node::Node;

    bool request(VRequest& request, double precision, const WeakVObjectPtr& caller,
                 const WeakVObjectPtr& origin) override
    {
        ++requests;
        lastPrecision = precision;
        lastPool = request.Pool;
        isFirst = caller == WeakVObjectPtr(this) && origin == WeakVObjectPtr(this);
        flag = request.Flag;
        if (log) log->push_back(getName());
        return whenAsked ? whenAsked() : true;
    }

    int requests = 0;
    WeakPtr<ValuePool> lastPool;
    bool isFirst = false;
    bool flag = true;
    std::function<bool()> whenAsked;
};

struct Scheduler : testing::Test
{
    ~Scheduler() override
    {
        for (const auto& object : objects) object->whenAsked = {};
        while (!VScheduler::getScheduledList().empty()) VScheduler::execute(1.0);
    }

    RefPtr<Asked> object(const string& name)
    {
        objects.push_back(network.adopt(new Asked(name)));
        return objects.back();
    }

    /// The names of the objects on the list.
    static std::vector<string> listed()
    {
        std::vector<string> names;
        for (const WeakPtr<VObject>& entry : VScheduler::getScheduledList())
            names.push_back(entry ? entry->getName() : "dead");
        return names;
    }

    QuorlTest::Network network;
    std::vector<RefPtr<Asked>> objects;
    RefPtr<ValuePool> pool = makePool();
};

using VSchedulerTest = Scheduler;

TEST(VScheduler, CountsRunningCallsWithAnOffset)
{
    // In a process of its own this is the first call of all.
    const int before = VScheduler::isRunning();
    EXPECT_TRUE(before == 0 || before == -1) << before;
    auto* const counting = new Asked("counting");
    const RefPtr<Asked> owner(counting);
    std::vector<int> seen;
    counting->whenAsked = [&] {
        seen.push_back(VScheduler::isRunning());
        return true;
    };
    for (int turn = 0; turn < 3; ++turn)
    {
        counting->schedule(1.0, {});
        VScheduler::execute(1.0);
        EXPECT_EQ(VScheduler::isRunning(), -1) << "behind each";
    }
    EXPECT_THAT(seen, ElementsAre(before + 1, 0, 0));
    counting->VManagedObject::remove();
}

TEST(VScheduler, CountsNoCallBeforeTheFirst)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const int before = VScheduler::isRunning();
            VScheduler::execute(1.0);
            std::exit(before == 0 && VScheduler::isRunning() == -1 ? 17 : 1);
        },
        testing::ExitedWithCode(17), "");
}

TEST_F(VSchedulerTest, RunsNothingWhenNothingIsListed)
{
    EXPECT_EQ(VScheduler::execute(1.0), 0);
    EXPECT_TRUE(VScheduler::AllowScheduling);
}

TEST_F(VSchedulerTest, ExchangesTheListsAlsoIfNothingIsListed)
{
    const auto deferring = object("deferring");
    const auto deferred = object("deferred");
    deferring->whenAsked = [&]() -> bool {
        deferred->schedule(1.0, pool);
        throw std::runtime_error("stop");
    };
    deferring->schedule(1.0, pool);
    EXPECT_THROW(VScheduler::execute(1.0), std::runtime_error);
    ASSERT_THAT(listed(), ElementsAre());

    EXPECT_EQ(VScheduler::execute(1.0), 0);
    EXPECT_THAT(listed(), ElementsAre("deferred"));
    EXPECT_EQ(VScheduler::execute(1.0), 1);
}

TEST_F(VSchedulerTest, RunsAnObjectOnceWithTheLastCallsValues)
{
    const auto one = object("one");
    const RefPtr<ValuePool> other = makePool();
    EXPECT_TRUE(one->schedule(3.0, other));
    EXPECT_TRUE(one->schedule(2.0, pool));

    EXPECT_EQ(VScheduler::execute(0.5), 1);

    EXPECT_EQ(one->requests, 1);
    EXPECT_EQ(one->lastPrecision, 1.0);
    EXPECT_EQ(one->lastPool, pool);
    EXPECT_TRUE(one->isFirst) << "as who asks and as where it started";
    EXPECT_FALSE(one->flag);
    EXPECT_EQ(VScheduler::execute(0.5), 0);
}

TEST_F(VSchedulerTest, RunsInTheOrderOfHandles)
{
    std::vector<RefPtr<VObject>> all;
    for (const char* name : {"a", "b", "c", "d", "e"}) all.emplace_back(object(name));
    std::ranges::sort(all, [](const auto& left, const auto& right) { return left < right; });
    std::vector<string> expected;
    for (const auto& one : all) expected.push_back(one->getName());
    for (auto entry = all.rbegin(); entry != all.rend(); ++entry)
        (*entry)->schedule(static_cast<double>(entry - all.rbegin()), pool);

    EXPECT_EQ(listed(), expected);
    EXPECT_EQ(VScheduler::execute(1.0), 5);
    EXPECT_EQ(network.takeLog(), expected);
}

TEST_F(VSchedulerTest, CountsOnlyWhatWasModifiedButTakesAllOffTheList)
{
    const auto yes = object("yes");
    const auto no = object("no");
    no->whenAsked = [] { return false; };
    yes->schedule(1.0, pool);
    no->schedule(1.0, pool);

    EXPECT_EQ(VScheduler::execute(1.0), 1);
    EXPECT_THAT(listed(), IsEmpty());
}

TEST_F(VSchedulerTest, DefersWhatIsScheduledMeanwhile)
{
    const auto again = object("again");
    std::vector<bool> answers;
    again->whenAsked = [&] {
        answers.push_back(again->schedule(5.0, {}));
        EXPECT_FALSE(VScheduler::AllowScheduling);
        EXPECT_THAT(listed(), IsEmpty()) << "neither itself, nor what is deferred";
        return true;
    };
    again->schedule(1.0, pool);

    EXPECT_EQ(VScheduler::execute(1.0), 1);
    EXPECT_THAT(answers, ElementsAre(false));
    EXPECT_THAT(listed(), ElementsAre("again"));

    again->whenAsked = {};
    EXPECT_EQ(VScheduler::execute(2.0), 1);
    EXPECT_EQ(again->lastPrecision, 10.0);
    EXPECT_FALSE(again->lastPool);
}

TEST_F(VSchedulerTest, KeepsAnObjectAliveUntilItHasRun)
{
    auto* const passing = new Asked("passing");
    const WeakPtr<VObject> seen(passing);
    int requests = 0;
    passing->whenAsked = [&] {
        ++requests;
        return true;
    };
    passing->schedule(1.0, pool);
    passing->VManagedObject::remove();
    EXPECT_TRUE(seen);

    VScheduler::execute(1.0);

    EXPECT_EQ(requests, 1);
    EXPECT_FALSE(seen);
}

TEST_F(VSchedulerTest, RunsInNoContextIfThatHasEnded)
{
    const auto one = object("one");
    one->schedule(1.0, pool);
    pool = RefPtr<ValuePool>();

    EXPECT_EQ(VScheduler::execute(1.0), 1);
    EXPECT_FALSE(one->lastPool);
}

TEST_F(VSchedulerTest, PassesOverWhatIsNoObjectAnyMore)
{
    VScheduler::schedule({}, 1.0, pool);
    auto* const doomed = new Asked("doomed");
    doomed->schedule(1.0, pool);
    doomed->VManagedObject::remove();
    delete doomed; // directly, behind the back of the list
    const auto one = object("one");
    one->schedule(1.0, pool);

    EXPECT_EQ(VScheduler::getScheduledList().size(), 3U);
    EXPECT_EQ(VScheduler::execute(1.0), 1);
    EXPECT_THAT(listed(), IsEmpty());
}

TEST_F(VSchedulerTest, ResetsTheDepthOfAnObject)
{
    const auto one = object("one");
    one->Executor.Level = 7;
    const auto before = one->Executor.Max;
    one->schedule(1.0, pool);
    VScheduler::execute(1.0);

    EXPECT_EQ(one->Executor.Level, 0);
    EXPECT_FALSE(one->Executor.Max == before);
}

TEST_F(VSchedulerTest, GoesOnAfterAnException)
{
    std::vector<RefPtr<Asked>> all{object("x"), object("y"), object("z")};
    std::ranges::sort(all, [](const auto& left, const auto& right) { return left < right; });
    const auto& [first, second, third] = std::tie(all[0], all[1], all[2]);
    first->whenAsked = [deferred = third] {
        deferred->schedule(4.0, {});
        return true;
    };
    second->whenAsked = []() -> bool { throw std::runtime_error("stop"); };
    for (const auto& one : all) one->schedule(1.0, pool);
    const int running = VScheduler::isRunning();

    EXPECT_THROW(VScheduler::execute(1.0), std::runtime_error);

    EXPECT_EQ(VScheduler::isRunning(), running) << "nothing was exchanged";
    EXPECT_TRUE(VScheduler::AllowScheduling);
    EXPECT_THAT(listed(), ElementsAre(third->getName())) << "not reached, with its own values";
    second->whenAsked = {};
    EXPECT_TRUE(second->schedule(1.0, pool)) << "new entries go to the list itself";

    first->whenAsked = {};
    EXPECT_EQ(VScheduler::execute(1.0), 2);
    EXPECT_EQ(third->lastPrecision, 1.0);
    EXPECT_THAT(listed(), ElementsAre(third->getName())) << "the deferred one, at last";
    EXPECT_EQ(VScheduler::execute(1.0), 1);
    EXPECT_EQ(third->lastPrecision, 4.0);
}

TEST_F(VSchedulerTest, RunsTheRestWhenItIsCalledFromInside)
{
    std::vector<RefPtr<Asked>> all{object("x"), object("y"), object("z")};
    std::ranges::sort(all, [](const auto& left, const auto& right) { return left < right; });
    int inner = -1;
    all[0]->whenAsked = [&] {
        inner = VScheduler::execute(1.0);
        return true;
    };
    for (const auto& one : all) one->schedule(1.0, pool);

    EXPECT_EQ(VScheduler::execute(1.0), 1);
    EXPECT_EQ(inner, 2);
    for (const auto& one : all) EXPECT_EQ(one->requests, 1);
}

TEST_F(VSchedulerTest, IsAProfiledSection)
{
    using Section = Tolmen::Profiler::Section;
    struct Listener final : Tolmen::Profiler::Listener
    {
        void opened(const Section& section) override { sections.push_back(section); }
        void closed(const Section&, double) override { ++closings; }
        std::vector<Section> sections;
        int closings = 0;
    } listener;
    auto* const before = Tolmen::Profiler::setListener(&listener);
    VScheduler::execute(1.0);
    Tolmen::Profiler::setListener(before);

    ASSERT_EQ(listener.sections.size(), 1U);
    EXPECT_EQ(listener.sections[0].object, "Scheduled Zelm Object Execution ");
    EXPECT_EQ(listener.sections[0].function, "static int Quorl::VScheduler::execute(double)");
    EXPECT_EQ(listener.sections[0].file, "VScheduler");
    EXPECT_EQ(listener.sections[0].line, 95);
    EXPECT_EQ(listener.sections[0].detail, 0);
    EXPECT_EQ(listener.closings, 1);
}

TEST_F(VSchedulerTest, BringsANetworkUpToDateInItsContext)
{
    const auto source = network.node("source");
    const auto sink = network.node("sink");
    network.connect(source, sink, "x");
    sink->schedule(2.0, pool);

    EXPECT_EQ(VScheduler::execute(0.25), 1);
    EXPECT_THAT(network.takeLog(), ElementsAre("source", "sink"));
    EXPECT_EQ(sink->lastPrecision, 0.5);
    EXPECT_EQ(source->lastPrecision, 1.0);
    sink->schedule(2.0, pool);
    EXPECT_EQ(VScheduler::execute(1.0), 0);
}

/// Random turns of a main loop, played on two plain maps as well.
TEST_F(VSchedulerTest, AgreesWithTwoPlainMaps)
{
    const auto seed = std::random_device()();
    std::mt19937 random(seed);
    std::vector<RefPtr<Asked>> all;
    for (int number = 0; number < 8; ++number) all.push_back(object(std::to_string(number)));
    std::ranges::sort(all, [](const auto& left, const auto& right) { return left < right; });

    std::map<std::size_t, double> coming; // by the place in the order of handles
    std::map<std::size_t, double> deferred;
    bool isExecuting = false;
    std::vector<string> expected;
    std::vector<string> ran;
    const auto scheduleSome = [&] {
        for (auto left = random() % 4; left > 0; --left)
        {
            const std::size_t place = random() % all.size();
            const auto precision = static_cast<double>(random() % 100);
            EXPECT_EQ(all[place]->schedule(precision, pool), !isExecuting) << "seed " << seed;
            (isExecuting ? deferred : coming)[place] = precision;
        }
    };
    for (const auto& one : all)
        one->whenAsked = [&, seen = one.rawptr()] {
            ran.push_back(seen->getName() + " " + std::to_string(seen->lastPrecision));
            scheduleSome();
            return true;
        };
    for (int turn = 0; turn < 300; ++turn)
    {
        scheduleSome();
        expected.clear();
        ran.clear();
        for (const auto& [place, precision] : coming)
            expected.push_back(all[place]->getName() + " " + std::to_string(precision * 2));
        isExecuting = true;
        EXPECT_EQ(VScheduler::execute(2.0), static_cast<int>(expected.size())) << "seed " << seed;
        isExecuting = false;
        EXPECT_EQ(ran, expected) << "seed " << seed << ", turn " << turn;
        coming = std::exchange(deferred, {});
    }
}

} // namespace
} // namespace Quorl
