#include <quorl/foundation/RefPtr.h>

#include <benchmark/benchmark.h>

#include <atomic>
#include <memory>

/// What is measured ends with the drop of the handle that was made. The bare limit is one atomic
/// increment and one decrement, the least that shared ownership by several threads can cost.

namespace QuorlBenchmark
{
namespace
{

class Root : public Tolmen::ReferenceBase<Root>
{
};
class Derived final : public Root
{
};

struct StandardRoot
{
    virtual ~StandardRoot() = default;
};
struct StandardDerived final : StandardRoot
{
};

using Strong = Tolmen::StrongPtr<Root, Root>;
using Weak = Tolmen::WeakPtrImpl<Root, Root>;
using StrongDerived = Tolmen::StrongPtr<Derived, Root>;
using WeakDerived = Tolmen::WeakPtrImpl<Derived, Root>;

using Shared = std::shared_ptr<StandardRoot>;
using Observing = std::weak_ptr<StandardRoot>;
using SharedDerived = std::shared_ptr<StandardDerived>;

/// Makes a `To` from a `From` again and again.
template <class From, class To, class Object>
void BM_MakeFrom(benchmark::State& state)
{
    const Tolmen::StrongPtr<Object, Root> owner(new Object);
    From source = owner;
    const int weakBefore = owner.referer->weak;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(&source);
        To made = source;
        benchmark::DoNotOptimize(&made);
    }
    if (To made = source; !made) state.SkipWithError("a handle was not alive");
    if (owner.referer->weak != weakBefore) state.SkipWithError("a share was not returned");
    state.SetItemsProcessed(state.iterations()); // handles
}

/// The same with what the standard library has for it.
template <class Source, class Make>
void makeFromStandard(benchmark::State& state, Source source, Make make)
{
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(&source);
        auto made = make(source);
        benchmark::DoNotOptimize(&made);
    }
    state.SetItemsProcessed(state.iterations()); // pointers
}

void BM_CopyShared(benchmark::State& state)
{
    makeFromStandard(state, std::make_shared<StandardRoot>(), [](const Shared& it) { return it; });
}

void BM_CopyWeakOfStandard(benchmark::State& state)
{
    const auto owner = std::make_shared<StandardRoot>();
    makeFromStandard(state, Observing(owner), [](const Observing& it) { return it; });
}

void BM_LockStandard(benchmark::State& state)
{
    const auto owner = std::make_shared<StandardRoot>();
    makeFromStandard(state, Observing(owner), [](const Observing& it) { return it.lock(); });
}

void BM_ConvertShared(benchmark::State& state)
{
    makeFromStandard(state, std::make_shared<StandardDerived>(),
                     [](const SharedDerived& it) { return Shared(it); });
}

void BM_CastShared(benchmark::State& state)
{
    makeFromStandard(state, Shared(std::make_shared<StandardDerived>()), [](const Shared& it) {
        return std::dynamic_pointer_cast<StandardDerived>(it);
    });
}

void BM_CountUpAndDown(benchmark::State& state)
{
    std::atomic<int> count = 1;
    for (auto _ : state)
    {
        count.fetch_add(1, std::memory_order_relaxed);
        count.fetch_sub(1, std::memory_order_acq_rel);
    }
    if (count != 1) state.SkipWithError("miscounted");
    state.SetItemsProcessed(state.iterations()); // pairs
}

void BM_MakeObject(benchmark::State& state)
{
    const int before = Tolmen::CheckRefcountedObjects;
    for (auto _ : state)
    {
        Strong made(new Root);
        benchmark::DoNotOptimize(&made);
    }
    if (Tolmen::CheckRefcountedObjects != before) state.SkipWithError("an object was left");
    state.SetItemsProcessed(state.iterations()); // objects
}

void BM_MakeStandardObject(benchmark::State& state)
{
    for (auto _ : state)
    {
        Shared made(new StandardRoot);
        benchmark::DoNotOptimize(&made);
    }
    state.SetItemsProcessed(state.iterations()); // objects
}

void BM_MakeBareObject(benchmark::State& state)
{
    for (auto _ : state)
    {
        std::unique_ptr<StandardRoot> made(new StandardRoot);
        benchmark::DoNotOptimize(&made);
    }
    state.SetItemsProcessed(state.iterations()); // objects
}

// Subjects of one and of two words: of the root of the handles, and of a class derived from it.
BENCHMARK(BM_MakeFrom<Strong, Strong, Root>)->Name("handle copy strong/ours");
BENCHMARK(BM_CopyShared)->Name("handle copy strong/std::shared_ptr");
BENCHMARK(BM_CountUpAndDown)->Name("handle copy strong/bare");
BENCHMARK(BM_MakeFrom<StrongDerived, StrongDerived, Derived>)
    ->Name("handle copy strong, derived/ours");
BENCHMARK(BM_CopyShared)->Name("handle copy strong, derived/std::shared_ptr");
BENCHMARK(BM_CountUpAndDown)->Name("handle copy strong, derived/bare");
BENCHMARK(BM_MakeFrom<Weak, Weak, Root>)->Name("handle copy weak/ours");
BENCHMARK(BM_CopyWeakOfStandard)->Name("handle copy weak/std::weak_ptr");
BENCHMARK(BM_CountUpAndDown)->Name("handle copy weak/bare");
BENCHMARK(BM_MakeFrom<WeakDerived, WeakDerived, Derived>)->Name("handle copy weak, derived/ours");
BENCHMARK(BM_CopyWeakOfStandard)->Name("handle copy weak, derived/std::weak_ptr");
BENCHMARK(BM_CountUpAndDown)->Name("handle copy weak, derived/bare");
BENCHMARK(BM_MakeFrom<Weak, Strong, Root>)->Name("handle lock/ours");
BENCHMARK(BM_LockStandard)->Name("handle lock/std::weak_ptr");
BENCHMARK(BM_CountUpAndDown)->Name("handle lock/bare");
BENCHMARK(BM_MakeFrom<WeakDerived, StrongDerived, Derived>)->Name("handle lock, derived/ours");
BENCHMARK(BM_LockStandard)->Name("handle lock, derived/std::weak_ptr");
BENCHMARK(BM_CountUpAndDown)->Name("handle lock, derived/bare");
BENCHMARK(BM_MakeFrom<StrongDerived, Strong, Derived>)->Name("handle to base/ours");
BENCHMARK(BM_ConvertShared)->Name("handle to base/std::shared_ptr");
BENCHMARK(BM_CountUpAndDown)->Name("handle to base/bare");
BENCHMARK(BM_MakeFrom<Strong, StrongDerived, Derived>)->Name("handle cast to derived/ours");
BENCHMARK(BM_CastShared)->Name("handle cast to derived/dynamic_pointer_cast");
BENCHMARK(BM_CountUpAndDown)->Name("handle cast to derived/bare");
BENCHMARK(BM_MakeObject)->Name("handle make and end object/ours");
BENCHMARK(BM_MakeStandardObject)->Name("handle make and end object/std::shared_ptr");
BENCHMARK(BM_MakeBareObject)->Name("handle make and end object/bare");

} // namespace
} // namespace QuorlBenchmark
