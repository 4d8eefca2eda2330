#include <quorl/objects/VDataFlowGraph.h>

#include <quorl/objects/VObject.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotIterator.h>

#include <algorithm>
#include <cstdio>
#include <tuple>
#include <utility>
#include <vector>

namespace Quorl
{
namespace
{

/// An input with an object behind it.
struct FedInput
{
    WeakPtr<VSlot> slot;
    WeakPtr<VObject> source;
};

/// Collects the inputs of the object that is being entered.
class Iterator final : public VSlotIterator
{
public:
    explicit Iterator(std::vector<FedInput>& inputs) : inputs_(inputs) {}

    bool apply(const RefPtr<VSlot>& slot, int /*expertLevel*/) override
    {
        if (!slot->Parameter) return true;
        const WeakPtr<VObject> source = slot->Parameter->source;
        if (source) inputs_.push_back({slot, source});
        return true;
    }

private:
    std::vector<FedInput>& inputs_;
};

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

/// An object on the way down from the root, and how far its inputs have been looked at.
class VDataFlowGraph::Visit
{
public:
    explicit Visit(VertexMap::iterator visited) : vertex_(visited)
    {
        Iterator collect(inputs_);
        visited->first->iterateParameters(VSlotContainer::kAllLevels, collect);
    }

    bool isDone() const { return next_ == inputs_.size(); }
    const FedInput& input() const { return inputs_[next_]; }
    void advance() { ++next_; }
    VertexMap::value_type& vertex() const { return *vertex_; }

private:
    VertexMap::iterator vertex_;
    std::vector<FedInput> inputs_;
    std::size_t next_ = 0;
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
    const auto [first, isNew] = Vertices.try_emplace(object);
    if (!isNew) return first;
    std::vector<Visit> way{Visit(first)}; // in the place of a recursion: chains may be long
    while (!way.empty())
    {
        if (way.back().isDone())
        {
            way.pop_back();
            continue;
        }
        const auto [source, isEntered] = Vertices.try_emplace(way.back().input().source);
        if (isEntered)
        {
            way.emplace_back(source); // the edge follows when the way has come back
            continue;
        }
        connect(*source, way.back().vertex(), way.back().input().slot);
        way.back().advance();
    }
    return first;
}

void VDataFlowGraph::connect(VertexMap::value_type& source, VertexMap::value_type& target,
                             const WeakPtr<VSlot>& slot)
{
    const auto edge = Edges.insert({source.first, target.first, slot}).first;
    target.second.push_back(edge);
    source.second.push_back(edge);
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
