#include <tests/model/At.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

/// What lazy evaluation promises, each promise by itself, on networks that are made up.
namespace QuorlTest
{
namespace
{

using Quorl::Ageable;
using Quorl::RefPtr;
using Quorl::ValuePool;
using Quorl::VParameter;
using Quorl::VRequest;

constexpr int kMostObjects = 7;
constexpr int kPools = 3;

/// Each object has an output, which its update sets, a parameter of its own, and inputs that show
/// outputs of others. Everything may have another value in each context.
class Web
{
public:
    /// \param wires who feeds whom; once each.
    Web(int objects, const std::set<std::pair<int, int>>& wires) : wires_(wires)
    {
        for (int number = 0; number < objects; ++number) add(number);
        for (const auto& [from, to] : wires)
            nodes[at(to)]->input("from " + std::to_string(from))->attachSource(outputs[at(from)]);
        for (int pool = 0; pool < kPools; ++pool) pools.push_back(makePool());
    }

    /// \return the objects that ran, in their order.
    std::vector<std::string> ask(int object, int pool)
    {
        network_.takeLog();
        QuorlTest::ask(nodes[at(object)], pools[at(pool)]);
        return network_.takeLog();
    }

    void set(const RefPtr<VParameter>& parameter, int pool) const
    {
        parameter->setValueFromText("1", pools[at(pool)], "", true, {}, nullptr, nullptr);
    }

    /// Brings all objects up to date in all contexts.
    void settle()
    {
        for (int pool = 0; pool < kPools; ++pool)
            for (std::size_t object = 0; object < nodes.size(); ++object)
                ask(static_cast<int>(object), pool);
    }

    /// The objects downstream of one, and itself.
    std::set<int> fedBy(int object) const
    {
        std::set<int> fed{object};
        for (std::size_t before = 0; before != fed.size();)
        {
            before = fed.size();
            for (const auto& [from, to] : wires_)
                if (fed.contains(from)) fed.insert(to);
        }
        return fed;
    }

    /// Everything that tells a moment in a context.
    std::vector<long long> agesIn(int pool) const
    {
        std::vector<long long> ages;
        for (std::size_t number = 0; number < nodes.size(); ++number)
        {
            ages.push_back(nodes[number]->age(pools[at(pool)]).stamp());
            ages.push_back(nodes[number]->ConnectionAge().stamp());
            ages.push_back(outputs[number]->age(pools[at(pool)]).stamp());
            ages.push_back(own[number]->age(pools[at(pool)]).stamp());
        }
        return ages;
    }

    std::vector<RefPtr<Node>> nodes;
    std::vector<RefPtr<VParameter>> outputs;
    std::vector<RefPtr<VParameter>> own;
    std::vector<RefPtr<ValuePool>> pools;
    std::set<int> failing;

private:
    void add(int number)
    {
        const RefPtr<Node> node = network_.node("o" + std::to_string(number));
        const RefPtr<VParameter> output = node->output("out");
        own.push_back(node->input("own")->Parameter);
        output->Localize();
        own.back()->Localize();
        node->whenUpdated = [this, output, number](VRequest& request) {
            if (failing.contains(number)) return false;
            output->setValueFromText("1", request.Pool, "", true, {}, nullptr, nullptr);
            return true;
        };
        nodes.push_back(node);
        outputs.push_back(output);
    }

    Network network_;
    const std::set<std::pair<int, int>> wires_;
};

/// \param withCycles whether objects may feed those that feed them.
Web anyWeb(bool withCycles)
{
    const int objects = *rc::gen::inRange(1, kMostObjects + 1);
    const auto end = rc::gen::inRange(0, objects);
    std::set<std::pair<int, int>> wires;
    for (const auto& [one, other] :
         *rc::gen::container<std::vector<std::pair<int, int>>>(rc::gen::pair(end, end)))
        if (withCycles)
            wires.emplace(one, other);
        else if (one != other)
            wires.emplace(std::min(one, other), std::max(one, other));
    return {objects, wires};
}

int anyObject(const Web& web)
{
    return *rc::gen::inRange(0, static_cast<int>(web.nodes.size()));
}

int anyPool()
{
    return *rc::gen::inRange(0, kPools);
}

/// A web that was up to date before one of its objects was given another value, and what a request
/// of some object runs then.
struct Change
{
    Change() : web(anyWeb(false)), changed(anyObject(web)), asked(anyObject(web))
    {
        const int pool = anyPool();
        web.settle();
        web.set(web.own[at(changed)], pool);
        for (const std::string& name : web.ask(asked, pool)) ++runs[std::stoi(name.substr(1))];
    }

    Web web;
    const int changed;
    const int asked;
    std::map<int, int> runs; ///< how often each object ran
};

RC_GTEST_PROP(Laziness, NothingRunsThatNeedNot, ())
{
    const Change change;
    const std::set<int> fed = change.web.fedBy(change.changed);
    for (const auto& [object, count] : change.runs)
    {
        RC_ASSERT(fed.contains(object));
        RC_ASSERT(count == 1);
    }
}

RC_GTEST_PROP(Laziness, NothingNeededStaysStale, ())
{
    const Change change;
    for (const int object : change.web.fedBy(change.changed))
        if (change.web.fedBy(object).contains(change.asked))
            RC_ASSERT(change.runs.contains(object));
}

RC_GTEST_PROP(Laziness, WhatFeedsRunsBeforeWhatIsFed, ())
{
    Web web = anyWeb(false);
    const int asked = anyObject(web);
    const std::vector<std::string> ran = web.ask(asked, anyPool());
    for (std::size_t earlier = 0; earlier < ran.size(); ++earlier)
        for (std::size_t later = earlier + 1; later < ran.size(); ++later)
            RC_ASSERT(!web.fedBy(std::stoi(ran[later].substr(1)))
                           .contains(std::stoi(ran[earlier].substr(1))));
}

RC_GTEST_PROP(Laziness, TheSameRequestTwiceChangesNothing, ())
{
    Web web = anyWeb(false);
    const int asked = anyObject(web);
    const int pool = anyPool();
    web.ask(asked, pool);
    const long long clock = Ageable::GlobalTime.stamp();
    const std::vector<long long> ages = web.agesIn(pool);

    RC_ASSERT(web.ask(asked, pool).empty());
    RC_ASSERT(Ageable::GlobalTime.stamp() == clock);
    RC_ASSERT(web.agesIn(pool) == ages);
}

RC_GTEST_PROP(Laziness, CyclesEnd, ())
{
    Web web = anyWeb(true);
    const std::vector<std::string> ran = web.ask(anyObject(web), anyPool());
    // An object runs once for each way on which a request reaches it, and no way goes in circles.
    for (const RefPtr<Node>& node : web.nodes)
    {
        RC_ASSERT(!node->Current);
        RC_ASSERT(node->RequestCounter.value() == 0);
    }
    RC_ASSERT(!ran.empty());
}

RC_GTEST_PROP(Laziness, AFailedUpdateIsTriedAgain, ())
{
    Web web = anyWeb(false);
    const int failing = anyObject(web);
    const int pool = anyPool();
    const std::string name = "o" + std::to_string(failing);
    web.failing = {failing};
    for (int attempt = 0; attempt < 3; ++attempt)
        RC_ASSERT(std::ranges::count(web.ask(failing, pool), name) == 1);
    web.failing = {};
    RC_ASSERT(std::ranges::count(web.ask(failing, pool), name) == 1);
    RC_ASSERT(web.ask(failing, pool).empty());
}

RC_GTEST_PROP(Laziness, AgesNeverFall, ())
{
    Web web = anyWeb(true);
    const auto moves = *rc::gen::container<std::vector<std::tuple<int, int, int>>>(
        rc::gen::tuple(rc::gen::inRange(0, 5), rc::gen::inRange(0, 24), rc::gen::inRange(0, 24)));
    std::vector<std::vector<long long>> before(kPools);
    for (int pool = 0; pool < kPools; ++pool) before[at(pool)] = web.agesIn(pool);
    for (const auto& [kind, a, b] : moves)
    {
        const int object = a % static_cast<int>(web.nodes.size());
        const int other = b % static_cast<int>(web.nodes.size());
        switch (kind)
        {
            case 0: web.set(web.own[at(object)], b % kPools); break;
            case 1: web.failing = {object}; break;
            case 2: web.nodes[at(object)]->Connect(web.outputs[at(other)]); break;
            default: web.ask(object, b % kPools); break;
        }
        for (int pool = 0; pool < kPools; ++pool)
        {
            const std::vector<long long> now = web.agesIn(pool);
            for (std::size_t place = 0; place < now.size(); ++place)
                RC_ASSERT(now[place] >= before[at(pool)][place]);
            before[at(pool)] = now;
        }
    }
}

RC_GTEST_PROP(Laziness, OneContextNeverMovesTheAgesOfAnother, ())
{
    Web web = anyWeb(true);
    if (*rc::gen::arbitrary<bool>()) web.settle();
    const auto moves = *rc::gen::container<std::vector<std::pair<bool, int>>>(
        rc::gen::pair(rc::gen::arbitrary<bool>(), rc::gen::inRange(0, 24)));
    const int pool = anyPool();
    const int another = (pool + 1 + *rc::gen::inRange(0, kPools - 1)) % kPools;
    const std::vector<long long> before = web.agesIn(another);
    for (const auto& [isChange, number] : moves)
    {
        const int object = number % static_cast<int>(web.nodes.size());
        if (isChange)
            web.set(web.own[at(object)], pool);
        else
            web.ask(object, pool);
    }
    RC_ASSERT(web.agesIn(another) == before);
}

RC_GTEST_PROP(Laziness, AGlobalValueReachesEveryContext, ())
{
    Web web = anyWeb(false);
    web.settle();
    const int changed = anyObject(web);
    const RefPtr<VParameter> shared = makeParameter("shared");
    web.nodes[at(changed)]->addParameter("shared", 0, shared, false);
    web.settle();
    shared->setValueFromText("2", {}, "", true, {}, nullptr, nullptr);
    const std::string name = "o" + std::to_string(changed);
    for (int pool = 0; pool < kPools; ++pool)
        RC_ASSERT(std::ranges::count(web.ask(changed, pool), name) == 1);
}

} // namespace
} // namespace QuorlTest
