#pragma once

#include <quorl/Forward.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace Quorl
{

/// The visits that a walk has really paid, and whom each of them asked, in order. An object that is
/// walked again has another place each time, since it may ask others then.
///
/// An object knows its place in the graph that it entered last: of several that are made at a time,
/// one may not know an object any more that it has.
class WalkGraph
{
public:
    using Place = std::uint32_t;
    static constexpr Place kNowhere = std::numeric_limits<Place>::max();

    Place add(VObject& object);
    void addSource(Place asker, Place source);

    /// The same without the object itself, by its number and its first place; `kNowhere` if this is
    /// that.
    Place add(std::int32_t number, Place first);

    void forgetObject(Place place); ///< which ends

    std::size_t size() const { return nodes_.size(); }
    std::size_t ways() const { return edges_.size(); }

    /// The last place of an object; `kNowhere` if it is not known here.
    Place placeOf(const VObject& object) const;

    /// The first place of the object of a place.
    Place first(Place place) const { return nodes_[place].first; }

    /// Null if it has ended.
    VObject* object(Place place) const { return nodes_[first(place)].object; }
    std::int32_t number(Place place) const { return nodes_[place].number; }

    /// Goes through the sources of a place, forwards or backwards.
    ///
    ///     for (auto way = graph.firstSource(place); way; way = way.next())
    class Source
    {
    public:
        explicit operator bool() const { return edge_ != kNowhere; }
        Place place() const { return graph_->edges_[edge_].source; }
        Source next() const { return {*graph_, graph_->edges_[edge_].next}; }
        Source previous() const { return {*graph_, graph_->edges_[edge_].previous}; }

    private:
        friend class WalkGraph;
        Source(const WalkGraph& graph, std::uint32_t edge) : graph_(&graph), edge_(edge) {}

        const WalkGraph* graph_;
        std::uint32_t edge_;
    };

    /// Whether visits and ways are the same, whichever the objects are.
    bool operator==(const WalkGraph& other) const;

    /// Of that: equal graphs have the same.
    std::size_t fingerprint() const;

    Source firstSource(Place asker) const { return {*this, nodes_[asker].firstEdge}; }
    Source lastSource(Place asker) const { return {*this, nodes_[asker].lastEdge}; }

private:
    struct Node
    {
        VObject* object;
        std::int32_t number; // the object's, which outlasts it
        Place first;
        std::uint32_t firstEdge = kNowhere;
        std::uint32_t lastEdge = kNowhere;
    };
    struct Edge
    {
        Place source;
        std::uint32_t previous;
        std::uint32_t next = kNowhere;

        bool operator==(const Edge& other) const = default;
    };

    std::vector<Node> nodes_;
    std::vector<Edge> edges_;
};

} // namespace Quorl
