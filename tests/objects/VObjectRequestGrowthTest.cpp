#include <quorl/objects/VConnectionValidator.h>
#include <quorl/objects/VObject.h>
#include <quorl/services/Vprintf.h>
#include <quorl/values/ValuePool.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

/// What requests cost in networks whose paths are many more than their objects: counted in
/// questions for ages, not in time.
namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Node;

std::int64_t theQuestions = 0;

/// Counts how often somebody asks for its age.
class CountingValue final : public VValue<double>
{
public:
    Ageable& age() override
    {
        ++theQuestions;
        return VValue<double>::age();
    }
    const Ageable& age() const override
    {
        ++theQuestions;
        return VValue<double>::age();
    }
    RefPtr<VValueBase> copy() const override { return RefPtr<VValueBase>(new CountingValue); }
};

/// Objects that have one output each, and take what earlier ones put out.
class Growing
{
public:
    RefPtr<Node> add(const std::vector<std::size_t>& sources)
    {
        const RefPtr<Node> node = network_.node("object " + std::to_string(nodes_.size()));
        const RefPtr<VValue<double>> value(new CountingValue);
        const RefPtr<VParameter> output(new QuorlTest::DoubleParameter(value, "output"));
        node->registerOutput(output, "output");
        node->whenUpdated = [output](VRequest& request) {
            output->touchValue(request.Pool);
            return true;
        };
        nodes_.push_back(node);
        outputs_.push_back(output);
        for (const std::size_t source : sources) connect(source, nodes_.size() - 1);
        return node;
    }

    void connect(std::size_t from, std::size_t to)
    {
        nodes_[to]->input(std::to_string(inputs_))->attachSource(outputs_[from]);
        ++inputs_;
    }

    /// \return how many questions a request at the last object asked, for each input of the
    /// network.
    double questionsOfRequest() { return questionsOfRequest(nodes_.size() - 1); }
    double questionsOfRequest(std::size_t object, const RefPtr<ValuePool>& pool = {})
    {
        theQuestions = 0;
        ask(nodes_[object], pool);
        return static_cast<double>(theQuestions) / inputs_;
    }

    /// From now on updates touch nothing.
    void calmDown()
    {
        for (const RefPtr<Node>& node : nodes_) node->whenUpdated = [](VRequest&) { return true; };
    }

    void changeFirst() { nodes_.front()->touchInputSetAge(); }
    std::size_t updates() { return network_.takeLog().size(); }
    std::size_t objects() const { return nodes_.size(); }
    VObject& first() const { return *nodes_.front(); }

private:
    Network network_;
    std::vector<RefPtr<Node>> nodes_;
    std::vector<RefPtr<VParameter>> outputs_;
    int inputs_ = 0;
};

/// Each layer takes from the one before, in such a way that each object is shared by all its
/// askers.
void addLayers(Growing& network, std::size_t layers)
{
    constexpr std::size_t kWidth = 10;
    for (std::size_t at = 0; at < kWidth; ++at) network.add({});
    for (std::size_t layer = 1; layer < layers; ++layer)
        for (std::size_t at = 0; at < kWidth; ++at)
        {
            const std::size_t before = (layer - 1) * kWidth;
            network.add({before + at, before + (at + 3) % kWidth, before + (at + 7) % kWidth});
        }
}

/// Each object takes from the two before it, so that it is reached at as many depths as there are
/// objects behind it.
void addLadder(Growing& network, std::size_t objects)
{
    network.add({});
    network.add({0});
    while (network.objects() < objects) network.add({network.objects() - 1, network.objects() - 2});
}

/// Each object takes twice from the one before it.
void addDoubleChain(Growing& network, std::size_t objects)
{
    network.add({});
    while (network.objects() < objects) network.add({network.objects() - 1, network.objects() - 1});
}

class Growth : public testing::TestWithParam<
                   std::pair<const char*, std::pair<void (*)(Growing&, std::size_t), std::size_t>>>
{
protected:
    /// Has the same checked of a network, and of one 2 and 8 times as large.
    template <class Check>
    void atEachSize(Check&& check) const
    {
        const auto [add, size] = GetParam().second;
        for (const std::size_t times : {1, 2, 8})
        {
            SCOPED_TRACE(times);
            Growing network;
            add(network, times * size);
            check(network);
        }
    }
};

constexpr double kMostForInput = 8; // questions of the first request, which runs all objects

TEST_P(Growth, OfTheFirstRequestIsLinear)
{
    atEachSize([](Growing& network) {
        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        EXPECT_GT(network.updates(), 0U);
    });
}

TEST_P(Growth, OfUnchangedRequestsIsLinear)
{
    atEachSize([](Growing& network) {
        network.questionsOfRequest();
        network.updates();

        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        EXPECT_EQ(network.questionsOfRequest(), 0) << "the place of each age is known";
        EXPECT_EQ(network.updates(), 0U);
    });
}

TEST_P(Growth, OfARequestAfterAChangeIsLinear)
{
    atEachSize([](Growing& network) {
        network.questionsOfRequest();
        network.questionsOfRequest();
        network.updates();
        network.changeFirst();

        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        EXPECT_GT(network.updates(), 0U);
    });
}

TEST_P(Growth, OfRequestsIsLinearWhereVprintfIsAsQuietAsCanBe)
{
    ::setenv("VVERBOSITY", "-1", 1);
    verbosity_level = -1;
    atEachSize([](Growing& network) {
        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        EXPECT_EQ(network.questionsOfRequest(), 0) << "the place of each age is known";
    });
    ::unsetenv("VVERBOSITY");
    verbosity_level = 0;
}

TEST_P(Growth, OfUnchangedRequestsIsThatOfAWalkWhereAStateIsLent)
{
    atEachSize([](Growing& network) {
        network.first().getState({});
        EXPECT_GT(network.questionsOfRequest(), 1);
        network.questionsOfRequest();

        EXPECT_LE(network.questionsOfRequest(), 1) << "no plan is made in vain";
    });
}

TEST_P(Growth, OfUnchangedRequestsIsLinearBehindAValidatorThatHasEnded)
{
    atEachSize([](Growing& network) {
        RefPtr<VConnectionValidator> validator(new VConnectionValidator);
        network.first().insertConnectionValidator(validator);
        network.questionsOfRequest();
        network.questionsOfRequest();
        validator = RefPtr<VConnectionValidator>();

        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        EXPECT_EQ(network.questionsOfRequest(), 0) << "the place of each age is known";
    });
}

/// Outputs that are fed back are younger each time than those they are made from, so that all
/// objects run again.
TEST_P(Growth, OfRequestsIsLinearWhereTheEndIsFedBack)
{
    atEachSize([](Growing& network) {
        network.connect(network.objects() - 1, 0);
        for (int request = 0; request < 3; ++request)
        {
            EXPECT_LE(network.questionsOfRequest(), kMostForInput);
            EXPECT_GT(network.updates(), network.objects() / 2);
        }
    });
}

TEST_P(Growth, OfRequestsIsLinearBehindACycle)
{
    atEachSize([](Growing& network) {
        const std::size_t size = network.objects();
        network.add({size - 1});
        network.connect(size, 0);
        for (std::size_t at = 0; at < size; ++at) network.add({size + at, size + at});
        network.calmDown();
        EXPECT_LE(network.questionsOfRequest(), 2 * kMostForInput);
        network.updates();

        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        EXPECT_EQ(network.updates(), 0U);
    });
}

TEST_P(Growth, OfRequestsIsLinearWithAValidator)
{
    atEachSize([](Growing& network) {
        const RefPtr<VConnectionValidator> validator(new VConnectionValidator);
        network.first().insertConnectionValidator(validator);

        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        network.changeFirst();
        EXPECT_LE(network.questionsOfRequest(), kMostForInput);
        EXPECT_EQ(validator->Taint, network.first().ID);
    });
}

INSTANTIATE_TEST_SUITE_P(Shapes, Growth,
                         testing::Values(std::pair("Layers", std::pair(&addLayers, 12U)),
                                         std::pair("Ladder", std::pair(&addLadder, 40U)),
                                         std::pair("DoubleChain", std::pair(&addDoubleChain, 40U))),
                         [](const auto& shape) { return std::string(shape.param.first); });

/// Its objects are reached at thousands of depths each: to count how often those became others
/// would take longer than anybody waits.
TEST(Ladder, OfManyObjectsIsEvaluated)
{
    constexpr std::size_t kObjects = 20000;
    Growing network;
    addLadder(network, kObjects);

    EXPECT_LE(network.questionsOfRequest(), kMostForInput);
    EXPECT_EQ(network.updates(), kObjects - 1); // the first has no inputs
    EXPECT_LE(network.questionsOfRequest(), kMostForInput);
    EXPECT_EQ(network.questionsOfRequest(), 0);
    EXPECT_EQ(network.updates(), 0U);
    EXPECT_EQ(network.first().Executor.Max->MaxLevel, static_cast<int>(kObjects) - 1);
    EXPECT_EQ(network.first().Executor.Max->Changes, std::numeric_limits<std::int32_t>::max());
}

/// Requests begin at many objects downstream of one chain, whose plans are more than are kept.
class ManyPlans : public testing::Test
{
protected:
    static constexpr std::size_t kLength = 2000;
    static constexpr std::size_t kEnds = 540;

    ManyPlans()
    {
        network.add({});
        while (network.objects() < kLength) network.add({network.objects() - 1});
        for (std::size_t at = 0; at < kEnds; ++at) network.add({kLength - 1});
        for (std::size_t at = 0; at < kEnds; ++at)
            for (int request = 0; request < 2; ++request) network.questionsOfRequest(end(at));
    }

    static std::size_t end(std::size_t number) { return kLength + number; }

    Growing network;
};

TEST_F(ManyPlans, MakeRoomForNewerOnes)
{
    EXPECT_EQ(network.questionsOfRequest(end(kEnds - 1)), 0) << "the last plan stands";
    EXPECT_EQ(network.questionsOfRequest(end(kEnds / 2)), 0) << "others, too";
    EXPECT_GT(network.questionsOfRequest(end(0)), 0) << "the first one has gone";
}

TEST_F(ManyPlans, ThatAreVoidMakeRoomForThatOfAnotherNetwork)
{
    Growing other;
    addDoubleChain(other, kLength);
    for (int request = 0; request < 3; ++request) other.questionsOfRequest();

    EXPECT_EQ(other.questionsOfRequest(), 0);
}

/// Requests in many contexts begin at the end of one chain.
class ManyContexts : public testing::Test
{
protected:
    static constexpr std::size_t kLength = 2000;
    static constexpr int kContexts = 540;

    ManyContexts()
    {
        network.add({});
        while (network.objects() < kLength) network.add({network.objects() - 1});
    }

    double questionsOfThirdRequest(const RefPtr<ValuePool>& pool)
    {
        for (int request = 0; request < 2; ++request) network.questionsOfRequest(kLength - 1, pool);
        return network.questionsOfRequest(kLength - 1, pool);
    }

    Growing network;
};

TEST_F(ManyContexts, MakeRoomWhenTheyHaveEnded)
{
    for (int context = 0; context < kContexts; ++context) questionsOfThirdRequest(makePool());

    EXPECT_EQ(questionsOfThirdRequest(makePool()), 0);
}

TEST_F(ManyContexts, ThatLiveMakeRoomForNewerOnes)
{
    std::vector<RefPtr<ValuePool>> contexts;
    for (int context = 0; context < kContexts; ++context)
    {
        contexts.push_back(makePool());
        EXPECT_EQ(questionsOfThirdRequest(contexts.back()), 0);
    }
}

TEST_F(ManyContexts, ThatEndedBehindTheirOwnersTakeNoRoom)
{
    const RefPtr<ValuePool> ended = makePool();
    delete ended.rawptr();
    for (int context = 0; context < kContexts; ++context) questionsOfThirdRequest(ended);

    EXPECT_EQ(questionsOfThirdRequest(makePool()), 0);
}

/// One object takes the ends of many chains.
void addChains(Growing& network, std::size_t chains, std::size_t length)
{
    std::vector<std::size_t> ends;
    for (std::size_t chain = 0; chain < chains; ++chain)
    {
        network.add({});
        for (std::size_t at = 1; at < length; ++at) network.add({network.objects() - 1});
        ends.push_back(network.objects() - 1);
    }
    network.add(ends);
}

TEST(ManyChains, CostARequestAfterAChangeInOneOfThemNotMuchMoreThanThatOne)
{
    constexpr std::size_t kChains = 20;
    constexpr std::size_t kLength = 30;
    Growing network;
    addChains(network, kChains, kLength);
    network.questionsOfRequest();
    network.questionsOfRequest();
    network.updates();
    network.changeFirst();

    constexpr double kInputs = kChains * kLength;
    constexpr double kInputsOfWork = kLength + kChains;
    EXPECT_LE(network.questionsOfRequest() * kInputs, kMostForInput * kInputsOfWork);
    EXPECT_EQ(network.updates(), kLength + 1);
    EXPECT_EQ(network.questionsOfRequest(), 0) << "the plan stands";
}

} // namespace
} // namespace Quorl
