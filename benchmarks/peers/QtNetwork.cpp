#include <benchmarks/NetworkRuns.h>
#include <benchmarks/Topology.h>

#include <QProperty>
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace QuorlBenchmark
{
namespace
{

/// Properties that are bound to each other. A change runs all that it concerns, at once.
class QtNetwork
{
public:
    explicit QtNetwork(const Topology& shape) : outputs_(shape.objects())
    {
        for (std::size_t number = 0; number < shape.objects(); ++number)
        {
            std::vector<const QProperty<double>*> inputs;
            for (const std::size_t source : shape.inputs[number])
                inputs.push_back(&outputs_[source]);
            if (inputs.empty()) inputs.push_back(&ownInputs_.emplace_back(0.0));
            outputs_[number].setBinding([this, inputs] {
                ++updates_;
                double sum = 1;
                for (const QProperty<double>* const input : inputs) sum += input->value();
                return sum;
            });
        }
    }

    void setLeaf(double datum) { ownInputs_.front().setValue(datum); }
    double result() const { return outputs_.back().value(); }
    std::int64_t updates() const { return updates_; }

private:
    std::int64_t updates_ = 0;
    std::deque<QProperty<double>> ownInputs_;
    std::deque<QProperty<double>> outputs_;
};

BENCHMARK(BM_ChangeLeaf<QtNetwork, &Topology::chain, 1000>)
    ->Name("change chain of 1000/Qt")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ChangeLeaf<QtNetwork, &Topology::chains, 100, 1000>)
    ->Name("change 100 chains of 1000/Qt")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SetLeaf<QtNetwork, 999>)->Name("set a typed value, chain of 1000/Qt");
BENCHMARK(BM_SetLeaf<QtNetwork, 0>)->Name("set a typed value, one object/Qt");

} // namespace
} // namespace QuorlBenchmark
