#include <quorl/objects/WalkGraph.h>

#include <quorl/objects/VObject.h>

#include <algorithm>
#include <tuple>

namespace Quorl
{
namespace
{

constexpr std::size_t kOdd = 0x9E3779B1; // and of many bits

} // namespace

WalkGraph::Place WalkGraph::add(VObject& object)
{
    const Place before = placeOf(object);
    const Place place =
        add(static_cast<std::int32_t>(object.ID), before == kNowhere ? kNowhere : first(before));
    nodes_.back().object = &object;
    object.place_.store(place, std::memory_order_relaxed);
    return place;
}

WalkGraph::Place WalkGraph::add(std::int32_t number, Place first)
{
    const auto place = static_cast<Place>(nodes_.size());
    nodes_.push_back({nullptr, number, first == kNowhere ? place : first});
    return place;
}

void WalkGraph::addSource(Place asker, Place source)
{
    const auto edge = static_cast<std::uint32_t>(edges_.size());
    Node& node = nodes_[asker];
    edges_.push_back({source, node.lastEdge});
    if (node.firstEdge == kNowhere)
        node.firstEdge = edge;
    else
        edges_[node.lastEdge].next = edge;
    node.lastEdge = edge;
}

/// The number also tells an object from one that stood at its address before.
WalkGraph::Place WalkGraph::placeOf(const VObject& tried) const
{
    const Place place = tried.place_.load(std::memory_order_relaxed);
    const bool isPlace = place < size() && object(place) == &tried &&
                         number(place) == static_cast<std::int32_t>(tried.ID);
    return isPlace ? place : kNowhere;
}

void WalkGraph::forgetObject(Place place)
{
    nodes_[first(place)].object = nullptr;
}

bool WalkGraph::operator==(const WalkGraph& other) const
{
    const auto isSame = [](const Node& a, const Node& b) {
        return std::tie(a.first, a.firstEdge, a.lastEdge) ==
               std::tie(b.first, b.firstEdge, b.lastEdge);
    };
    return edges_ == other.edges_ && std::ranges::equal(nodes_, other.nodes_, isSame);
}

std::size_t WalkGraph::fingerprint() const
{
    std::size_t print = nodes_.size();
    const auto mix = [&](std::size_t next) { print = (print ^ next) * kOdd; };
    for (const Node& node : nodes_) mix(node.firstEdge);
    for (const Edge& edge : edges_) mix(edge.source);
    return print;
}

} // namespace Quorl
