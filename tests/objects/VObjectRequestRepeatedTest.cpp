#include <quorl/objects/VConnectionValidator.h>
#include <quorl/objects/VConnectionValidatorList.h>
#include <quorl/objects/VObject.h>
#include <quorl/slots/VSlotTables.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// Requests that were repeated often enough to be answered by what the last one found, and that
/// nevertheless see what has been done meanwhile.
namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Node;
using QuorlTest::touchInput;

constexpr int kRecognised = 77;
constexpr int kOften = 6;

void askOften(const RefPtr<Node>& node, const RefPtr<ValuePool>& pool)
{
    for (int time = 0; time < kOften; ++time) ask(node, pool);
}

/// An object with a younger input of a class that only another object recognises.
class RepeatedRequest : public testing::Test
{
protected:
    RepeatedRequest()
    {
        const RefPtr<VSlot> slot = network.connect(network.node("source"), object, "x");
        slot->InputClass = kRecognised;
        other->classes.insert(kRecognised);
        askOften(object, pool);
        touchInput(slot, pool);
        askOften(object, pool);
        network.takeLog();
    }

    Network network;
    RefPtr<Node> object = network.node("object");
    RefPtr<Node> other = network.node("other");
    RefPtr<ValuePool> pool = makePool();
};

TEST_F(RepeatedRequest, SeesClassesThatWereCopied)
{
    EXPECT_FALSE(ask(object, pool)) << "the input is none of its classes";

    object->classes = other->classes;

    EXPECT_TRUE(ask(object, pool));
}

TEST_F(RepeatedRequest, SeesClassesThatWereExchanged)
{
    std::swap(object->classes, other->classes);

    EXPECT_TRUE(ask(object, pool));
}

/// What a request answers when something has ended, and what it updates.
struct Outcome
{
    bool answer;
    std::vector<std::string> updated;

    bool operator==(const Outcome&) const = default;
};

using End = std::function<void(const RefPtr<VSlot>& slot, RefPtr<ValuePool>& pool)>;

Outcome outcomeBehind(int requests, const End& end)
{
    Network network;
    const auto object = network.node("object");
    network.connect(network.node("source"), object, "x");
    const RefPtr<VSlot> slot = object->input("own");
    RefPtr<ValuePool> pool = makePool();
    const WeakPtr<ValuePool> observer = pool;
    for (int time = 0; time < requests; ++time) ask(object, pool);
    network.takeLog();
    end(slot, pool);
    const bool answer = ask(object, RefPtr<ValuePool>(observer));
    return {answer, network.takeLog()};
}

TEST(VObjectRequest, IsAnsweredAsEverIfWhatItConcernsHasEnded)
{
    const auto expectSame = [](const char* what, const End& end) {
        SCOPED_TRACE(what);
        EXPECT_EQ(outcomeBehind(kOften, end), outcomeBehind(1, end));
    };
    expectSame("pool", [](const auto&, const auto& pool) { delete pool.rawptr(); });
    expectSame("pool that nobody holds", [](const auto&, auto& pool) { pool = {}; });
    expectSame("slot", [](const auto& slot, const auto&) { delete slot.rawptr(); });
    expectSame("parameter", [](const auto& slot, const auto&) { delete slot->Parameter.rawptr(); });
    expectSame("default value", [](const auto& slot, const auto&) {
        delete slot->Parameter->defaultValue.rawptr();
    });
}

TEST(VObjectRequest, TellsValidatorsThatCameWithTheListOfAnother)
{
    const RefPtr<VConnectionValidator> validator(new VConnectionValidator); // older than all of it
    Network network;
    const auto object = network.node("object");
    const auto other = network.node("other");
    network.connect(network.node("source"), object, "x");
    other->insertConnectionValidator(validator);
    askOften(object, {});

    VConnectionValidatorList& list = *object;
    list = *other;
    ask(object);

    EXPECT_EQ(validator->Taint, object->ID);
}

template <class Levels>
concept CanMoveLevels = requires(Levels& levels) { levels.extract(0); } ||
                        requires(Levels& levels) { levels.merge(levels); } ||
                        requires(Levels& levels) { levels.swap(levels); } ||
                        requires(Levels& levels) { swap(levels, levels); } ||
                        requires(Levels& levels) { levels = std::move(levels); };
static_assert(!CanMoveLevels<VInputLevels>, "nobody would look anew");
static_assert(CanMoveLevels<std::map<int, int>>);

/// Each update of an object with an old state demands another one.
TEST(VObjectRequest, RunsWhatHasAnOldStateEachTime)
{
    Network network;
    const RefPtr<ValuePool> pool = makePool();
    std::vector<RefPtr<Node>> chain{network.node("0")};
    const auto own = chain.front()->input("own");
    for (const char* const name : {"1", "2", "3", "4"})
    {
        chain.push_back(network.node(name));
        network.connect(*std::prev(chain.end(), 2), chain.back(), "x");
    }
    askOften(chain.back(), pool);
    for (const std::size_t at : {1, 3}) chain[at]->myState(pool)->touch();
    touchInput(own, pool);
    ask(chain.back(), pool);
    network.takeLog();

    for (int time = 0; time < kOften; ++time)
    {
        EXPECT_TRUE(ask(chain.back(), pool));
        EXPECT_EQ(network.takeLog(), (std::vector<std::string>{"1", "2", "3", "4"}));
    }
}

/// The identity of an evaluation that does something when it ends.
class EndingID : public VRequest::ID
{
public:
    explicit EndingID(std::function<void()> act) : act_(std::move(act)) {}
    EndingID(const EndingID&) = delete;
    EndingID& operator=(const EndingID&) = delete;
    ~EndingID() override { act_(); }

private:
    std::function<void()> act_;
};

TEST(VObjectRequest, MayDropAnIdentityThatTakesObjectsWithIt)
{
    Network network;
    const RefPtr<ValuePool> pool = makePool();
    const auto end = network.node("end");
    const auto middle = network.node("middle");
    RefPtr<Node> source(new Node("source", &network.log));
    const WeakPtr<Node> observer = source;
    network.connect(source, middle, "x");
    network.connect(middle, end, "x");
    askOften(end, pool);
    {
        VRequest request(pool, false);
        request.Id = RefPtr<VRequest::ID>(new EndingID([observer] {
            EXPECT_TRUE(observer);
            observer->remove();
        }));
        end->init_request(request, 1.0);
    }
    askOften(source, pool); // so that only those behind it know the identity
    source = {};
    ask(end, pool);
    EXPECT_TRUE(observer);
    network.takeLog();

    EXPECT_FALSE(ask(end, pool)) << "nothing was to be done when it was asked";

    EXPECT_FALSE(observer);
    EXPECT_EQ(network.takeLog(), std::vector<std::string>());
}

TEST(VObjectRequest, SeesWhatTheEndOfAnIdentityTouchesWhereItIsWalked)
{
    Network network;
    const RefPtr<ValuePool> pool = makePool();
    const auto end = network.node("end");
    const auto source = network.node("source");
    const auto own = source->input("own");
    network.connect(source, end, "x");
    askOften(end, pool);
    {
        VRequest request(pool, false);
        request.Id = RefPtr<VRequest::ID>(new EndingID([&] { touchInput(own, pool); }));
        end->init_request(request, 1.0);
    }
    ask(end, pool);
    network.takeLog();

    EXPECT_TRUE(ask(end, pool)) << "the source drops the identity before it looks at its input";

    EXPECT_EQ(network.takeLog(), (std::vector<std::string>{"source", "end"}));
    askOften(end, pool);
    EXPECT_EQ(network.takeLog(), std::vector<std::string>());
}

/// Ends with a request at an object downstream of it.
class AskingAtTheEnd : public Node
{
public:
    struct OwnState final : State
    {
        ~OwnState() override { act(); }
        std::function<void()> act;
    };

    AskingAtTheEnd(const std::string& nodeName, std::function<void()> whatToAsk)
        : Node(nodeName), act(std::move(whatToAsk))
    {
    }
    AskingAtTheEnd(const AskingAtTheEnd&) = delete;
    AskingAtTheEnd& operator=(const AskingAtTheEnd&) = delete;
    ~AskingAtTheEnd() override { act(); }

    RefPtr<State> newState() const override
    {
        OwnState* const state = new OwnState;
        state->act = act;
        return RefPtr<State>(state);
    }

    std::function<void()> act;
};

TEST(VObjectRequest, DoesNotComeToAnObjectThatEnds)
{
    Network network;
    const RefPtr<ValuePool> pool = makePool();
    const auto end = network.node("end");
    std::int32_t number = 0;
    int requests = 0;
    const auto askAtTheEnd = [&] {
        VRequest request(pool, false);
        end->init_request(request, 1.0);
        EXPECT_FALSE(request.Id->levels().contains(number));
        ++requests;
    };
    {
        const auto mortal = RefPtr<Node>(new AskingAtTheEnd("mortal", askAtTheEnd));
        number = mortal->ID;
        network.connect(mortal, end, "x");
        mortal->myState(pool);
        askOften(end, pool);
        mortal->remove();
    }

    EXPECT_EQ(requests, 2) << "of the object and of its state";
}

TEST(VObjectRequest, KeepsTheContextThatAnUpdateTakesFromIt)
{
    Network network;
    const auto source = network.node("source");
    const auto end = network.node("end");
    const auto own = source->input("own");
    network.connect(source, end, "x");
    WeakPtr<ValuePool> first;
    bool wasAlive = false;
    source->whenUpdated = [&](VRequest& request) {
        request.Pool = makePool();
        wasAlive = static_cast<bool>(first);
        return true;
    };
    touchInput(own);
    {
        VRequest request(makePool(), false);
        first = request.Pool;
        end->init_request(request, 1.0);
    }

    EXPECT_EQ(source->updates, 1);
    EXPECT_TRUE(wasAlive) << "visits are under way that look at its ages";
    EXPECT_FALSE(first);
}

TEST(VObjectRequest, SeesWhatAThreadHasTouchedThatAnUpdateWaitedFor)
{
    Network network;
    const RefPtr<ValuePool> pool = makePool();
    const auto shared = network.node("shared");
    const auto first = network.node("first");
    const auto second = network.node("second");
    const auto end = network.node("end");
    const auto own = shared->input("own");
    const auto ownOfFirst = first->input("own");
    const auto ownOfSecond = second->input("own");
    network.connect(shared, end, "1");
    network.connect(first, end, "2");
    network.connect(shared, end, "3");
    network.connect(second, end, "4");
    network.connect(shared, end, "5");
    ask(end, pool);
    network.takeLog();
    second->whenUpdated = [&](VRequest&) {
        std::thread([&] { touchInput(own, pool); }).join();
        return true;
    };
    touchInput(ownOfFirst, pool);
    touchInput(ownOfSecond, pool);

    EXPECT_TRUE(ask(end, pool));

    EXPECT_EQ(network.takeLog(), (std::vector<std::string>{"first", "second", "shared", "end"}));
}

} // namespace
} // namespace Quorl
