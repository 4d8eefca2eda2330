#include "Drawing.h"

#include <quorl/objects/VObject.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/ValuePool.h>
#include <zelm/network/NetworkBuilder.h>

#include <algorithm>
#include <functional>

namespace Zelm
{
namespace
{

using Quorl::ValuePool;
using Quorl::VObject;
using Quorl::VSlot;
using Quorl::VSlotContainer;

void addOnce(std::vector<std::string>& names, const std::string& name)
{
    if (std::ranges::find(names, name) == names.end()) names.push_back(name);
}

/// Makes the drawing of one network.
class Artist
{
public:
    Artist(const LoadedNetwork& network, const std::vector<Outcome>& outcomes)
        : pools_(network.contexts), objects_(network.liveObjects())
    {
        for (const RefPtr<ValuePool>& pool : pools_) drawing_.contexts.push_back(pool->name);
        for (const RefPtr<VObject>& object : objects_)
            drawing_.nodes.push_back({object->getName(), object->CreatorName(), {}, {}, {}});
        for (std::size_t to = 0; to < objects_.size(); ++to) addEdgesTo(to);
        for (const RefPtr<ValuePool>& pool : pools_) addStates(pool, outcomes);
    }

    const Drawing& drawing() const { return drawing_; }

private:
    void addEdgesTo(std::size_t to)
    {
        objects_[to]->iterate_inputs(std::function<bool(VSlot&, int)>([&](const VSlot& slot, int) {
            if (slot.Parameter && !isOwnInput(*objects_[to], slot)) addEdge(slot, to);
            return true;
        }));
    }

    void addEdge(const VSlot& slot, std::size_t to)
    {
        const bool isShared = !slot.Parameter->source;
        const RefPtr<VSlotContainer> provider =
            isShared ? slot.Parameter->creator : slot.Parameter->source;
        const RefPtr<VObject> source = provider;
        const RefPtr<VSlot> end = isShared ? provider->findSlot(slot.Parameter)
                                           : provider->findOutputSlot(slot.Parameter);
        const auto place = std::ranges::find(objects_, source);
        if (place == objects_.end() || !end) return; // it comes from outside of the file
        const auto from = static_cast<std::size_t>(place - objects_.begin());
        addOnce(drawing_.nodes[to].inputs, slot.Name);
        addOnce(isShared ? drawing_.nodes[from].inputs : drawing_.nodes[from].outputs, end->Name);
        drawing_.edges.push_back({from, to, end->Name, slot.Name, isShared, {}});
        for (const RefPtr<ValuePool>& pool : pools_)
            drawing_.edges.back().ages.push_back(slot.ValueAge(pool).stamp());
    }

    void addStates(const RefPtr<ValuePool>& pool, const std::vector<Outcome>& outcomes)
    {
        for (std::size_t at = 0; at < objects_.size(); ++at)
            drawing_.nodes[at].states.push_back(stateOf(*objects_[at], pool, outcomes));
        spreadStaleness(drawing_.nodes.front().states.size() - 1);
    }

    static Drawing::State stateOf(const VObject& object, const RefPtr<ValuePool>& pool,
                                  const std::vector<Outcome>& outcomes)
    {
        if (!object.RequestProcessing) return Drawing::State::NotReady;
        for (const Outcome& outcome : outcomes)
            for (const Run& run : outcome.runs)
                if (outcome.context == pool->name && run.object == object.getName() &&
                    run.hasFailed)
                    return Drawing::State::Failed;
        if (object.age(pool) == Quorl::Ageable::Ooooold) return Drawing::State::NeverRun;
        return isStale(object, pool) ? Drawing::State::Stale : Drawing::State::Fresh;
    }

    /// What takes something from an object that would run would run as well.
    void spreadStaleness(std::size_t context)
    {
        for (bool hasChanged = true; hasChanged;)
        {
            hasChanged = false;
            for (const Drawing::Edge& edge : drawing_.edges)
            {
                Drawing::State& state = drawing_.nodes[edge.to].states[context];
                const bool isFed = edge.isShared || drawing_.nodes[edge.from].states[context] ==
                                                        Drawing::State::Fresh;
                if (isFed || state != Drawing::State::Fresh) continue;
                state = Drawing::State::Stale;
                hasChanged = true;
            }
        }
    }

    const std::vector<RefPtr<ValuePool>>& pools_;
    const std::vector<RefPtr<VObject>> objects_;
    Drawing drawing_;
};

} // namespace

const char* Drawing::wordOf(State state)
{
    switch (state)
    {
        case State::Fresh: return "fresh";
        case State::Stale: return "stale";
        case State::NeverRun: return "never run";
        case State::Failed: return "failed";
        case State::NotReady: break;
    }
    return "not ready";
}

Json Drawing::json() const
{
    Json objects = Json::array();
    for (const Node& node : nodes)
    {
        Json states = Json::object();
        for (std::size_t at = 0; at < contexts.size(); ++at)
            states[contexts[at]] = wordOf(node.states[at]);
        objects.push_back({{"object", node.name},
                           {"creator", node.creator},
                           {"inputs", node.inputs},
                           {"outputs", node.outputs},
                           {"states", states}});
    }
    Json connections = Json::array();
    for (const Edge& edge : edges)
    {
        Json ages = Json::object();
        for (std::size_t at = 0; at < contexts.size(); ++at) ages[contexts[at]] = edge.ages[at];
        connections.push_back({{"from", nodes[edge.from].name},
                               {edge.isShared ? "shared input" : "output", edge.output},
                               {"to", nodes[edge.to].name},
                               {"input", edge.input},
                               {"ages", ages}});
    }
    return {{"contexts", contexts}, {"objects", objects}, {"connections", connections}};
}

Drawing drawingOf(const LoadedNetwork& network, const std::vector<Outcome>& outcomes)
{
    return Artist(network, outcomes).drawing();
}

} // namespace Zelm
