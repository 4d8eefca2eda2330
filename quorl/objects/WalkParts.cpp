#include <quorl/objects/WalkParts.h>

#include <algorithm>

namespace Quorl
{
namespace
{

using Place = WalkGraph::Place;

/// From the lowest to the highest place that something has to do with.
struct Reach
{
    Place lowest;
    Place highest;

    void include(Place place) { include({place, place}); }
    void include(const Reach& other)
    {
        lowest = std::min(lowest, other.lowest);
        highest = std::max(highest, other.highest);
    }
};

struct Node
{
    Place discoverer = WalkGraph::kNowhere; // who asked it first
    Place end;                              // of what it has discovered, and so on
    Reach inside; // of all edges of that, but not of those that lead to it
    Reach askers;
};

std::vector<Node> nodesOf(const WalkGraph& graph)
{
    std::vector<Node> nodes;
    for (Place place = 0; place < graph.size(); ++place)
        nodes.push_back({WalkGraph::kNowhere, place + 1, {place, place}, {place, place}});
    for (Place asker = 0; asker < graph.size(); ++asker)
        for (auto way = graph.firstSource(asker); way; way = way.next())
        {
            Node& source = nodes[way.place()];
            nodes[asker].inside.include(way.place());
            source.askers.include(asker);
            // Of all who were met before it, those that still wait for answers follow each other
            // as on the path, whose end the last one is.
            if (asker < way.place()) source.discoverer = asker;
        }
    return nodes;
}

} // namespace

std::vector<Place> endsOfParts(const WalkGraph& graph)
{
    std::vector<Node> nodes = nodesOf(graph);
    std::vector<Place> ends(nodes.size(), WalkGraph::kNowhere);
    for (auto place = static_cast<Place>(nodes.size()); place-- > 0;)
    {
        const Node& node = nodes[place];
        if (node.inside.lowest == place && node.inside.highest < node.end) ends[place] = node.end;
        if (node.discoverer == WalkGraph::kNowhere) continue;
        Node& discoverer = nodes[node.discoverer];
        discoverer.end = std::max(discoverer.end, node.end);
        discoverer.inside.include(node.inside);
        discoverer.inside.include(node.askers);
    }
    return ends;
}

} // namespace Quorl
