#include <benchmarks/NetworkRuns.h>
#include <benchmarks/Topology.h>

#include <Inventor/SoDB.h>
#include <Inventor/engines/SoSubEngine.h>
#include <Inventor/fields/SoSFDouble.h>
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace QuorlBenchmark
{

/// Puts out one more than its input.
class Adder : public SoEngine
{
    SO_ENGINE_HEADER(Adder);

public:
    static void initClass() { SO_ENGINE_INIT_CLASS(Adder, SoEngine, "Engine"); }

    Adder()
    {
        SO_ENGINE_CONSTRUCTOR(Adder);
        SO_ENGINE_ADD_INPUT(in, (0));
        SO_ENGINE_ADD_OUTPUT(out, SoSFDouble);
    }

    SoSFDouble in;
    SoEngineOutput out;
    std::int64_t updates = 0;

private:
    void evaluate() override
    {
        ++updates;
        const double sum = in.getValue() + 1;
        SO_ENGINE_OUTPUT(out, SoSFDouble, setValue(sum));
    }
};

SO_ENGINE_SOURCE(Adder)

namespace
{

/// Engines, of which a change marks all that it concerns, and which run when they are asked. They
/// have one input each, as fields can be connected to one master only; so where the last object has
/// several, a field for each stands in its place.
class CoinNetwork
{
public:
    explicit CoinNetwork(const Topology& shape)
    {
        makeReady();
        const bool hasSink = shape.inputs.back().size() > 1;
        const std::size_t engines = shape.objects() - (hasSink ? 1 : 0);
        for (std::size_t number = 0; number < engines; ++number)
        {
            engines_.push_back(new Adder);
            engines_.back()->ref();
            for (const std::size_t source : shape.inputs[number])
                engines_.back()->in.connectFrom(&engines_[source]->out);
        }
        if (hasSink)
            for (const std::size_t source : shape.inputs.back())
                ends_.emplace_back().connectFrom(&engines_[source]->out);
        else
            ends_.emplace_back().connectFrom(&engines_.back()->out);
        sinks_ = hasSink ? 1 : 0;
    }
    CoinNetwork(const CoinNetwork&) = delete;
    CoinNetwork& operator=(const CoinNetwork&) = delete;
    ~CoinNetwork()
    {
        for (SoSFDouble& end : ends_) end.disconnect();
        for (Adder* const engine : engines_) engine->in.disconnect();
        for (Adder* const engine : engines_) engine->unref();
    }

    void setLeaf(double datum) { engines_.front()->in.setValue(datum); }

    double result()
    {
        sinkUpdates_ += sinks_;
        double sum = sinks_;
        for (const SoSFDouble& end : ends_) sum += end.getValue();
        return sum;
    }

    std::int64_t updates() const
    {
        std::int64_t sum = sinkUpdates_;
        for (const Adder* const engine : engines_) sum += engine->updates;
        return sum;
    }

private:
    static void makeReady()
    {
        [[maybe_unused]] static const bool isReady = [] {
            SoDB::init();
            Adder::initClass();
            return true;
        }();
    }

    std::vector<Adder*> engines_;
    std::deque<SoSFDouble> ends_;
    int sinks_ = 0;
    std::int64_t sinkUpdates_ = 0;
};

BENCHMARK(BM_ChangeLeaf<CoinNetwork, &Topology::chain, 1000>)
    ->Name("change chain of 1000/Coin")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ChangeLeaf<CoinNetwork, &Topology::chains, 100, 1000>)
    ->Name("change 100 chains of 1000/Coin")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SetLeaf<CoinNetwork, 999>)->Name("set a typed value, chain of 1000/Coin");
BENCHMARK(BM_SetLeaf<CoinNetwork, 0>)->Name("set a typed value, one object/Coin");
BENCHMARK(BM_BytesOfObject<CoinNetwork>)->Name("bytes of an object/Coin")->Iterations(1);
BENCHMARK(BM_BytesOfConnection<CoinNetwork>)->Name("bytes of a connection/Coin")->Iterations(1);

} // namespace
} // namespace QuorlBenchmark
