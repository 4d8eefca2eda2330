#include <quorl/objects/WalkGraph.h>

#include <quorl/objects/VObject.h>

namespace Quorl
{

WalkGraph::Place WalkGraph::add(VObject& object, Place first)
{
    const auto place = static_cast<Place>(nodes_.size());
    nodes_.push_back(
        {&object, static_cast<std::int32_t>(object.ID), first == kNowhere ? place : first});
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

bool WalkGraph::isPlaceOf(Place place, const VObject& tried) const
{
    return place < size() && object(place) == &tried &&
           number(place) == static_cast<std::int32_t>(tried.ID);
}

void WalkGraph::forgetObject(Place place)
{
    nodes_[first(place)].object = nullptr;
}

} // namespace Quorl
