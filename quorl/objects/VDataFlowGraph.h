#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/objects/VConnectionValidator.h>

#include <cstdint>
#include <list>
#include <map>
#include <set>

namespace Quorl
{

/// The network upstream of an object, as it was when it was looked at: who feeds whom, through
/// which input.
///
/// It does not follow the network. Its holder enters it with `insertConnectionValidator` into the
/// containers that it cares for, the root at least, and looks at two things: `Taint` becomes the
/// number of an object whose connections were changed, at once; and the graph's age moves when a
/// request through such a container has met a younger connection further up. Then it is time to
/// `rebuild`.
///
/// Nothing in it keeps an object or a slot alive.
///
/// Threads: the one that edits the network. No lock.
class QUORL_API VDataFlowGraph : public VConnectionValidator
{
public:
    /// An input through which an object is fed.
    struct QUORL_API Edge
    {
        WeakPtr<VObject> Source;
        WeakPtr<VObject> Target;
        WeakPtr<VSlot> Slot; ///< of the target

        bool operator<(const Edge& other) const; ///< by source, target and slot, each by its handle
    };

    using EdgeSet = std::set<Edge>;

    /// An object of the graph. It keeps its place when the object has ended: it knows the number.
    struct QUORL_API Vertex : WeakPtr<VObject>
    {
        Vertex(const WeakPtr<VObject>& object); // NOLINT(*-explicit-*): to be looked up by a handle

        bool operator<(const Vertex& other) const; ///< by the numbers of the objects

        std::int32_t serial; ///< the object's `ID`; 0 for one that was dead already
    };

    /// With each object, the edges that arrive at it and that leave it, in the order in which they
    /// were found. An edge from an object to itself does both, and stands there twice.
    using VertexMap = std::map<Vertex, std::list<EdgeSet::const_iterator>>;

    explicit VDataFlowGraph(const WeakPtr<VObject>& root);
    VDataFlowGraph(const VDataFlowGraph&) = delete; // its lists hold places of its own set
    VDataFlowGraph& operator=(const VDataFlowGraph&) = delete;
    ~VDataFlowGraph() override;

    /// Starts anew, from any root. The age and the taint stand.
    void rebuild(const WeakPtr<VObject>& root);

    /// Enters an object and all that is upstream of it, unless it is there. Takes time in
    /// proportion to the edges, and no deeper stack for a longer chain.
    /// \return its place; the end for a dead object.
    /// \throws std::bad_alloc what it has entered by then stays, and wants a `rebuild`.
    VertexMap::iterator insertParentalInfo(const WeakPtr<VObject>& object);

    VertexMap::iterator findVertex(const WeakPtr<VObject>& object); ///< the end if it is not there
    VertexMap::const_iterator findVertex(const WeakPtr<VObject>& object) const;

    /// Writes a line for each object to standard output: its name, and the input of each edge.
    void print() const;

    VertexMap Vertices;
    EdgeSet Edges;

private:
    struct Stop;

    void goUpstream(VertexMap::iterator start);
    void connect(VertexMap::iterator source, const Stop& target);
};

} // namespace Quorl
