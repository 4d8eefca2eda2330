#include <quorl/objects/VDataFlowGraph.h>

#include <quorl/objects/VObject.h>
#include <quorl/slots/InputCursor.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <tuple>

namespace Quorl
{
namespace
{

/// An object that has ended does not tell its number any more; then all are looked at.
template <class Vertices>
auto find(Vertices& vertices, const WeakPtr<VObject>& object)
{
    if (object) return vertices.find(object);
    return std::find_if(vertices.begin(), vertices.end(), [&](const auto& vertex) {
        return static_cast<const WeakPtr<VObject>&>(vertex.first) == object;
    });
}

} // namespace

/// An object on the way down from the root, and the input from which the way goes on.
struct VDataFlowGraph::Stop
{
    explicit Stop(VertexMap::iterator entered)
        : vertex(entered), inputs(*entered->first, VSlotContainer::kAllLevels)
    {
    }

    VertexMap::iterator vertex;
    InputCursor inputs;
};

bool VDataFlowGraph::Edge::operator<(const Edge& other) const
{
    return std::tie(Source, Target, Slot) < std::tie(other.Source, other.Target, other.Slot);
}

VDataFlowGraph::Vertex::Vertex(const WeakPtr<VObject>& object)
    : WeakPtr<VObject>(object), serial(object ? object->ID : 0)
{
}

bool VDataFlowGraph::Vertex::operator<(const Vertex& other) const
{
    if (serial != other.serial) return serial < other.serial;
    return static_cast<const WeakPtr<VObject>&>(*this) <
           static_cast<const WeakPtr<VObject>&>(other);
}

VDataFlowGraph::VDataFlowGraph(const WeakPtr<VObject>& root)
{
    insertParentalInfo(root);
}

VDataFlowGraph::~VDataFlowGraph() = default;

void VDataFlowGraph::rebuild(const WeakPtr<VObject>& root)
{
    const WeakPtr<VObject> start = root; // it may be that of a vertex
    Vertices.clear();
    Edges.clear();
    insertParentalInfo(start);
}

VDataFlowGraph::VertexMap::iterator
VDataFlowGraph::insertParentalInfo(const WeakPtr<VObject>& object)
{
    if (!object) return Vertices.end();
    const auto [vertex, isNew] = Vertices.try_emplace(object);
    if (isNew) goUpstream(vertex);
    return vertex;
}

/// In the place of a recursion, for chains may be long. An edge is entered when the way has come
/// back from its source.
void VDataFlowGraph::goUpstream(VertexMap::iterator start)
{
    std::deque<Stop> way;
    way.emplace_back(start);
    while (!way.empty())
    {
        Stop& stop = way.back();
        if (!stop.inputs.next())
        {
            const VertexMap::iterator left = stop.vertex;
            way.pop_back();
            if (!way.empty()) connect(left, way.back());
            continue;
        }
        const RefPtr<VSlot>& slot = stop.inputs.slot();
        if (!slot->Parameter) continue;
        const WeakPtr<VObject> object = slot->Parameter->source;
        if (!object) continue;
        const auto [source, isNew] = Vertices.try_emplace(object);
        if (isNew)
            way.emplace_back(source);
        else
            connect(source, stop);
    }
}

void VDataFlowGraph::connect(VertexMap::iterator source, const Stop& target)
{
    const auto edge =
        Edges.insert({source->first, target.vertex->first, target.inputs.slot()}).first;
    target.vertex->second.push_back(edge);
    source->second.push_back(edge);
}

VDataFlowGraph::VertexMap::iterator VDataFlowGraph::findVertex(const WeakPtr<VObject>& object)
{
    return find(Vertices, object);
}

VDataFlowGraph::VertexMap::const_iterator
VDataFlowGraph::findVertex(const WeakPtr<VObject>& object) const
{
    return find(Vertices, object);
}

void VDataFlowGraph::print() const
{
    for (const auto& [object, edges] : Vertices)
    {
        if (!object) continue;
        std::printf("[%s]: ", object->getName().c_str());
        for (const auto& edge : edges)
            if (edge->Slot) std::printf(" %s ", edge->Slot->Name.c_str());
        std::printf("\n");
    }
}

} // namespace Quorl
