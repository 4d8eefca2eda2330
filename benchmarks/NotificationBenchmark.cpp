#include <benchmarks/CallRuns.h>

#include <quorl/values/VValue.h>
#include <quorl/values/ValueMap.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValueNotifierList.h>
#include <quorl/values/ValuePool.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

/// A change is told to observers that count it.

namespace QuorlBenchmark
{
namespace
{

using Quorl::RefPtr;

class CountingObserver final : public Quorl::ValueNotifier
{
public:
    explicit CountingObserver(std::int64_t& count) : count_(count) {}

    void valueChanged(const RefPtr<Quorl::VValueBase>& /*value*/,
                      const Quorl::WeakPtr<Quorl::ValuePool>& /*pool*/,
                      const Quorl::ValueNotifierList* /*caller*/,
                      const Quorl::ValueMap* /*changes*/) override
    {
        ++count_;
    }

private:
    std::int64_t& count_;
};

class Listener
{
public:
    virtual ~Listener() = default;
    virtual void changed(const double& value) = 0;
};

/// Of two kinds, lest the compiler know what is called.
template <int kind>
class CountingListener final : public Listener
{
public:
    explicit CountingListener(std::int64_t& count) : count_(count) {}
    void changed(const double& /*value*/) override { ++count_; }

private:
    std::int64_t& count_;
};

template <std::size_t observers>
void BM_Notify(benchmark::State& state)
{
    std::int64_t calls = 0;
    const RefPtr<Quorl::ValueNotifierList> list(new Quorl::ValueNotifierList);
    std::vector<RefPtr<Quorl::ValueNotifier>> owners;
    for (std::size_t left = observers; left > 0; --left)
    {
        owners.push_back(RefPtr<Quorl::ValueNotifier>(new CountingObserver(calls)));
        list->addNotifier(owners.back());
    }
    const RefPtr<Quorl::VValueBase> value(new Quorl::VValue<double>(1.0));
    const Quorl::WeakPtr<Quorl::ValuePool> pool;
    const Quorl::WeakPtr<Quorl::ValueNotifier> skip;
    tellAgain(state, observers, calls, [&] { list->notify(value, pool, skip, nullptr, nullptr); });
}

template <std::size_t observers>
void BM_CallFunctions(benchmark::State& state)
{
    std::int64_t calls = 0;
    const std::vector<std::function<void(const double&)>> functions(
        observers, [&calls](const double&) { ++calls; });
    double value = 1.0;
    tellAgain(state, observers, calls, [&] {
        benchmark::DoNotOptimize(&value);
        for (const auto& function : functions) function(value);
    });
}

std::vector<std::unique_ptr<Listener>> makeListeners(std::size_t count, std::int64_t& calls)
{
    std::vector<std::unique_ptr<Listener>> listeners;
    for (std::size_t left = count; left > 0; --left)
        if (left % 2 == 0)
            listeners.push_back(std::make_unique<CountingListener<0>>(calls));
        else
            listeners.push_back(std::make_unique<CountingListener<1>>(calls));
    return listeners;
}

template <std::size_t observers>
void BM_CallListeners(benchmark::State& state)
{
    std::int64_t calls = 0;
    const auto listeners = makeListeners(observers, calls);
    double value = 1.0;
    tellAgain(state, observers, calls, [&] {
        benchmark::DoNotOptimize(listeners.data());
        benchmark::ClobberMemory();
        for (const auto& listener : listeners) listener->changed(value);
    });
}

/// A list that does not own what it calls, so that it has to look whether that still lives.
template <std::size_t observers>
void BM_CallLiveListeners(benchmark::State& state)
{
    std::int64_t calls = 0;
    const auto owners = makeListeners(observers, calls);
    struct Life
    {
        Listener* listener;
    };
    std::vector<std::unique_ptr<Life>> lives;
    for (const auto& owner : owners) lives.push_back(std::make_unique<Life>(Life{owner.get()}));
    double value = 1.0;
    tellAgain(state, observers, calls, [&] {
        benchmark::DoNotOptimize(lives.data());
        benchmark::ClobberMemory();
        for (const auto& life : lives)
            if (life->listener) life->listener->changed(value);
    });
}

BENCHMARK(BM_Notify<1>)->Name("notify 1 observer/ours");
BENCHMARK(BM_CallFunctions<1>)->Name("notify 1 observer/std::function");
BENCHMARK(BM_CallListeners<1>)->Name("notify 1 observer/bare");
BENCHMARK(BM_CallLiveListeners<1>)->Name("notify 1 observer/bare, tested weak list");
BENCHMARK(BM_Notify<10>)->Name("notify 10 observers/ours");
BENCHMARK(BM_CallFunctions<10>)->Name("notify 10 observers/std::function");
BENCHMARK(BM_CallListeners<10>)->Name("notify 10 observers/bare");
BENCHMARK(BM_CallLiveListeners<10>)->Name("notify 10 observers/bare, tested weak list");
BENCHMARK(BM_Notify<1000>)->Name("notify 1000 observers/ours");
BENCHMARK(BM_CallFunctions<1000>)->Name("notify 1000 observers/std::function");
BENCHMARK(BM_CallListeners<1000>)->Name("notify 1000 observers/bare");
BENCHMARK(BM_CallLiveListeners<1000>)->Name("notify 1000 observers/bare, tested weak list");

} // namespace
} // namespace QuorlBenchmark
