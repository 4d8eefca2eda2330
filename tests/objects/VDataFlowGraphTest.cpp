#include <quorl/objects/VDataFlowGraph.h>

#include <quorl/objects/VRequest.h>
#include <quorl/services/Vprintf.h>
#include <quorl/slots/VSlot.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace Quorl
{
namespace
{

using QuorlTest::errorOutputOf;
using QuorlTest::makeParameter;
using QuorlTest::Node;
using QuorlTest::outputOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct Graphs : testing::Test
{
    static std::vector<string> namesIn(const VDataFlowGraph& graph)
    {
        std::vector<string> names;
        for (const auto& [object, edges] : graph.Vertices) names.push_back(object->getName());
        return names;
    }

    static std::vector<string> edgesOf(const VDataFlowGraph& graph, const RefPtr<Node>& node)
    {
        std::vector<string> names;
        for (const auto& edge : graph.findVertex(node)->second)
            names.push_back(edge->Source->getName() + " " + edge->Slot->Name + " " +
                            edge->Target->getName());
        return names;
    }

    QuorlTest::Network network;
    const RefPtr<Node> source = network.node("source");
    const RefPtr<Node> middle = network.node("middle");
    const RefPtr<Node> sink = network.node("sink");
};

TEST_F(Graphs, AnObjectWithoutInputsIsOneVertexAndNoEdge)
{
    source->input("free");
    const VDataFlowGraph graph(source);
    EXPECT_THAT(namesIn(graph), ElementsAre("source"));
    EXPECT_THAT(graph.Edges, IsEmpty());
    EXPECT_THAT(graph.findVertex(source)->second, IsEmpty());
    EXPECT_EQ(graph.findVertex(sink), graph.Vertices.end());
}

TEST_F(Graphs, HoldsWhatIsUpstreamInTheOrderOfTheObjects)
{
    network.connect(middle, sink, "upper");
    network.connect(source, middle, "lower", 900);
    network.connect(sink, network.node("downstream"), "x");

    const VDataFlowGraph graph(sink);

    EXPECT_THAT(namesIn(graph), ElementsAre("source", "middle", "sink"));
    EXPECT_THAT(graph.Edges, SizeIs(2));
    EXPECT_THAT(edgesOf(graph, source), ElementsAre("source lower middle"));
    EXPECT_THAT(edgesOf(graph, middle), ElementsAre("source lower middle", "middle upper sink"));
    EXPECT_THAT(edgesOf(graph, sink), ElementsAre("middle upper sink"));
}

TEST_F(Graphs, PrintsTheInputsOfTheEdgesOfEachObject)
{
    network.connect(middle, sink, "upper");
    network.connect(source, middle, "lower");
    network.connect(source, sink, "short cut");
    const VDataFlowGraph graph(sink);
    EXPECT_EQ(outputOf([&] { graph.print(); }), "[source]:  short cut  lower \n"
                                                "[middle]:  lower  upper \n"
                                                "[sink]:  short cut  upper \n");
}

TEST_F(Graphs, PrintsNoInputThatHasEnded)
{
    sink->addSlot(RefPtr<VSlot>(new VSlot(sink.rawptr(), {}, "empty", "")), 0, false);
    network.connect(source, sink, "a");
    network.connect(source, sink, "b");
    const VDataFlowGraph graph(sink);
    sink->removeParameter("a");

    EXPECT_THAT(graph.Edges, SizeIs(2));
    EXPECT_EQ(outputOf([&] { graph.print(); }), "[source]:  b \n[sink]:  b \n");
}

TEST_F(Graphs, TwoInputsOfOneSourceAreTwoEdgesAndOneVertex)
{
    const RefPtr<VParameter> offered = source->output("out");
    sink->input("a")->attachSource(offered);
    sink->input("b", 5)->attachSource(offered);
    const VDataFlowGraph graph(sink);
    EXPECT_THAT(namesIn(graph), ElementsAre("source", "sink"));
    EXPECT_THAT(edgesOf(graph, source), ElementsAre("source a sink", "source b sink"));
    EXPECT_THAT(edgesOf(graph, sink), ElementsAre("source a sink", "source b sink"));
}

TEST_F(Graphs, TellsTheInputsOfASourceBetweenThoseOfItsConsumer)
{
    source->input("of the source");
    network.connect(source, sink, "first");
    network.connect(middle, sink, "second");
    middle->input("of the middle");
    constexpr int kTraces = 100;
    verbosity_level = kTraces;

    const string told = errorOutputOf([&] { const VDataFlowGraph graph(sink); });

    verbosity_level = 0;
    EXPECT_EQ(told, "VSlotContainer::iterateInputs(2147483647): Have 1 inputs.\n"
                    "VSlotContainer::iterateInputs(2147483647): `first'\n"
                    "VSlotContainer::iterateInputs(2147483647): Have 1 inputs.\n"
                    "VSlotContainer::iterateInputs(2147483647): `of the source'\n"
                    "VSlotContainer::iterateInputs(2147483647): `second'\n"
                    "VSlotContainer::iterateInputs(2147483647): Have 1 inputs.\n"
                    "VSlotContainer::iterateInputs(2147483647): `of the middle'\n");
}

TEST_F(Graphs, ACycleEndsWithEachObjectOnce)
{
    network.connect(source, middle, "a");
    network.connect(middle, sink, "b");
    network.connect(sink, source, "c");
    const VDataFlowGraph graph(middle);
    EXPECT_THAT(namesIn(graph), ElementsAre("source", "middle", "sink"));
    EXPECT_THAT(graph.Edges, SizeIs(3));
    for (const auto& [object, edges] : graph.Vertices) EXPECT_THAT(edges, SizeIs(2));
}

TEST_F(Graphs, AnEdgeToItselfArrivesAndLeaves)
{
    network.connect(sink, sink, "loop");
    const VDataFlowGraph graph(sink);
    EXPECT_THAT(graph.Edges, SizeIs(1));
    EXPECT_THAT(edgesOf(graph, sink), ElementsAre("sink loop sink", "sink loop sink"));
}

TEST_F(Graphs, FollowsInputsThatRequestsPassOver)
{
    network.connect(source, sink, "qZelm::hidden");
    const VDataFlowGraph graph(sink);
    EXPECT_THAT(namesIn(graph), ElementsAre("source", "sink"));
}

TEST_F(Graphs, GoesOnBehindAnInputWithoutAParameter)
{
    sink->input("a")->Parameter = RefPtr<VParameter>();
    network.connect(source, sink, "b");

    EXPECT_THAT(edgesOf(VDataFlowGraph(sink), sink), ElementsAre("source b sink"));
}

TEST_F(Graphs, OfADeadObjectIsEmpty)
{
    WeakPtr<VObject> dead;
    {
        const RefPtr<Node> mortal(new Node("mortal"));
        dead = mortal;
        mortal->VManagedObject::remove();
    }
    VDataFlowGraph graph(dead);
    EXPECT_THAT(graph.Vertices, IsEmpty());
    EXPECT_EQ(graph.insertParentalInfo(dead), graph.Vertices.end());
    EXPECT_EQ(graph.insertParentalInfo({}), graph.Vertices.end());
    EXPECT_EQ(graph.findVertex(dead), graph.Vertices.end());
}

TEST_F(Graphs, InsertingAgainGivesTheEntryThatIsThere)
{
    network.connect(source, sink, "a");
    VDataFlowGraph graph(sink);
    const auto entry = graph.findVertex(source);
    network.connect(middle, source, "later");
    EXPECT_EQ(graph.insertParentalInfo(source), entry);
    EXPECT_THAT(namesIn(graph), ElementsAre("source", "sink"));
    const auto added = graph.insertParentalInfo(middle);
    EXPECT_EQ(added, graph.findVertex(middle));
    EXPECT_THAT(namesIn(graph), ElementsAre("source", "middle", "sink"));
}

TEST_F(Graphs, KeepsThePlacesOfObjectsThatHaveEnded)
{
    RefPtr<Node> mortal(new Node("mortal"));
    network.connect(mortal, sink, "a");
    const VDataFlowGraph graph(sink);
    mortal->VManagedObject::remove();
    mortal = RefPtr<Node>();

    EXPECT_THAT(graph.Vertices, SizeIs(2));
    EXPECT_FALSE(graph.Vertices.rbegin()->first);
    EXPECT_EQ(outputOf([&] { graph.print(); }), "[sink]:  a \n");
}

TEST_F(Graphs, FindsAnObjectThatHasEnded)
{
    RefPtr<Node> mortal(new Node("mortal"));
    network.connect(mortal, sink, "a");
    const VDataFlowGraph graph(sink);
    const WeakPtr<VObject> ended = mortal;
    RefPtr<Node> other(new Node("stranger"));
    const WeakPtr<VObject> stranger = other;
    for (RefPtr<Node>* object : {&mortal, &other})
    {
        (*object)->VManagedObject::remove();
        *object = RefPtr<Node>();
    }
    ASSERT_FALSE(ended);

    const auto vertex = graph.findVertex(ended);
    ASSERT_NE(vertex, graph.Vertices.end());
    EXPECT_THAT(vertex->second, SizeIs(1));
    EXPECT_EQ(graph.findVertex(stranger), graph.Vertices.end());
}

TEST_F(Graphs, RebuildMayStartFromOneOfItsVertices)
{
    network.connect(middle, sink, "upper");
    network.connect(source, middle, "lower");
    VDataFlowGraph graph(sink);
    graph.rebuild(graph.findVertex(middle)->first);
    EXPECT_THAT(namesIn(graph), ElementsAre("source", "middle"));
}

TEST_F(Graphs, RebuildStartsAnewFromAnyRoot)
{
    network.connect(middle, sink, "upper");
    VDataFlowGraph graph(sink);
    const Ageable before = graph;
    Ageable::GlobalTime.touch();
    network.connect(source, middle, "lower");
    graph.rebuild(middle);
    EXPECT_THAT(namesIn(graph), ElementsAre("source", "middle"));
    EXPECT_THAT(graph.Edges, SizeIs(1));
    EXPECT_EQ(static_cast<const Ageable&>(graph), before);
    graph.rebuild({});
    EXPECT_THAT(graph.Vertices, IsEmpty());
    EXPECT_THAT(graph.Edges, IsEmpty());
}

TEST_F(Graphs, ItsHolderLearnsOfAChangeOfTheRootAtOnce)
{
    network.connect(middle, sink, "upper");
    const RefPtr<VDataFlowGraph> graph(new VDataFlowGraph(sink));
    sink->insertConnectionValidator(graph);
    const Ageable before = *graph;
    EXPECT_EQ(graph->Taint, 0);

    network.connect(source, sink, "direct");

    EXPECT_EQ(graph->Taint, sink->ID);
    EXPECT_EQ(static_cast<const Ageable&>(*graph), before);
}

TEST_F(Graphs, ItsHolderLearnsOfADistantChangeByTheNextRequest)
{
    network.connect(middle, sink, "upper");
    QuorlTest::ask(sink);
    const RefPtr<VDataFlowGraph> graph(new VDataFlowGraph(sink));
    sink->insertConnectionValidator(graph);
    const Ageable before = *graph;

    QuorlTest::ask(sink);
    EXPECT_EQ(static_cast<const Ageable&>(*graph), before) << "nothing has changed";

    network.connect(source, middle, "lower");
    EXPECT_EQ(graph->Taint, 0);
    EXPECT_EQ(static_cast<const Ageable&>(*graph), before);

    QuorlTest::ask(sink);
    EXPECT_EQ(graph->Taint, middle->ID);
    EXPECT_TRUE(before < static_cast<const Ageable&>(*graph));
}

TEST_F(Graphs, AnyNetworkIsShownEdgeByEdge)
{
    std::random_device device;
    const unsigned seed = device();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::vector<RefPtr<Node>> nodes;
    for (int number = 0; number < 40; ++number)
        nodes.push_back(network.node("n" + std::to_string(number)));
    std::vector<std::set<std::size_t>> parents(nodes.size());
    std::size_t connections = 0;
    for (int number = 0; number < 60; ++number)
    {
        const std::size_t from = random() % nodes.size();
        const std::size_t to = random() % nodes.size();
        network.connect(nodes[from], nodes[to], "i" + std::to_string(number));
        parents[to].insert(from);
    }
    std::set<std::size_t> reached;
    const std::function<void(std::size_t)> reach = [&](std::size_t node) {
        if (!reached.insert(node).second) return;
        connections += static_cast<std::size_t>(nodes[node]->getNumberOfInputs());
        for (const std::size_t parent : parents[node]) reach(parent);
    };
    reach(0);

    const VDataFlowGraph graph(nodes[0]);

    std::vector<string> expected;
    for (const std::size_t node : reached) expected.push_back(nodes[node]->getName());
    EXPECT_EQ(namesIn(graph), expected);
    EXPECT_EQ(graph.Edges.size(), connections);
    std::size_t ends = 0;
    for (const auto& [object, edges] : graph.Vertices) ends += edges.size();
    EXPECT_EQ(ends, 2 * connections);
    for (const auto& edge : graph.Edges)
        EXPECT_EQ(RefPtr<VObject>(edge.Slot->Parameter->source), edge.Source);
}

TEST_F(Graphs, AChainOfAHundredThousandNeedsNoDeepStack)
{
    constexpr int kLength = 100000;
    RefPtr<Node> last = source;
    for (int number = 1; number < kLength; ++number)
    {
        const RefPtr<Node> next = network.node("link" + std::to_string(number));
        network.connect(last, next, "in");
        last = next;
    }
    const VDataFlowGraph graph(last);
    EXPECT_THAT(graph.Vertices, SizeIs(kLength));
    EXPECT_THAT(graph.Edges, SizeIs(kLength - 1));
}

TEST_F(Graphs, KeepsTheOrderOfEdgesWhoseObjectsHaveEnded)
{
    std::vector<RefPtr<Node>> mortals;
    for (const char* name : {"a", "b", "c", "d", "e"})
    {
        mortals.push_back(RefPtr<Node>(new Node(name)));
        network.connect(mortals.back(), sink, name);
    }
    const VDataFlowGraph graph(sink);
    for (const auto& mortal : mortals) mortal->VManagedObject::remove();
    mortals.clear();

    for (auto edge = graph.Edges.begin(); edge != graph.Edges.end(); ++edge)
        EXPECT_EQ(graph.Edges.find(*edge), edge);
}

} // namespace
} // namespace Quorl
