#include <benchmarks/CallRuns.h>

#include <quorl/foundation/RefPtr.h>

#include <benchmark/benchmark.h>

#include <atomic>
#include <memory>
#include <utility>

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
}

void BM_CopyShared(benchmark::State& state)
{
    makeAgain(state, std::make_shared<StandardRoot>(), [](const Shared& it) { return it; });
}

/// There and back again, which are two moves.
template <class Pointer>
void BM_Move(benchmark::State& state, Pointer here)
{
    Pointer there;
    for (auto _ : state)
    {
        there = std::move(here);
        benchmark::DoNotOptimize(&there);
        here = std::move(there);
        benchmark::DoNotOptimize(&here);
    }
    if (!here) state.SkipWithError("the object was lost on its way");
}

void BM_MoveHandle(benchmark::State& state)
{
    BM_Move(state, Strong(new Root));
}

void BM_MoveShared(benchmark::State& state)
{
    BM_Move(state, std::make_shared<StandardRoot>());
}

void BM_CopyWeakOfStandard(benchmark::State& state)
{
    const auto owner = std::make_shared<StandardRoot>();
    makeAgain(state, Observing(owner), [](const Observing& it) { return it; });
}

void BM_LockStandard(benchmark::State& state)
{
    const auto owner = std::make_shared<StandardRoot>();
    makeAgain(state, Observing(owner), [](const Observing& it) { return it.lock(); });
}

void BM_ConvertShared(benchmark::State& state)
{
    makeAgain(state, std::make_shared<StandardDerived>(),
              [](const SharedDerived& it) { return Shared(it); });
}

void BM_CastShared(benchmark::State& state)
{
    makeAgain(state, Shared(std::make_shared<StandardDerived>()),
              [](const Shared& it) { return std::dynamic_pointer_cast<StandardDerived>(it); });
}

/// Derives again and again, and beside that from an interface that its root knows nothing of.
class Interface
{
public:
    virtual ~Interface() = default;
};
template <int depth, class RootClass>
class Level : public Level<depth - 1, RootClass>
{
};
template <class RootClass>
class Level<0, RootClass> : public RootClass
{
};
constexpr int kDepth = 8;
class Deep final : public Level<kDepth, Root>, public Interface
{
};
class StandardDeep final : public Level<kDepth, StandardRoot>, public Interface
{
};

void BM_CastSharedToInterface(benchmark::State& state)
{
    makeAgain(state, Shared(std::make_shared<StandardDeep>()),
              [](const Shared& it) { return std::dynamic_pointer_cast<Interface>(it); });
}

/// Where the class is known, as it is not to a cast.
void BM_CastStatically(benchmark::State& state)
{
    const Strong owner(new Deep);
    makeAgain(state, owner, [](const Strong& it) {
        const Strong copy = it;
        return static_cast<Interface*>(static_cast<Deep*>(copy.operator->()));
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
}

void BM_MakeStandardObject(benchmark::State& state)
{
    for (auto _ : state)
    {
        Shared made(new StandardRoot);
        benchmark::DoNotOptimize(&made);
    }
}

void BM_MakeShared(benchmark::State& state)
{
    for (auto _ : state)
    {
        auto made = std::make_shared<StandardRoot>();
        benchmark::DoNotOptimize(&made);
    }
}

void BM_MakeBareObject(benchmark::State& state)
{
    for (auto _ : state)
    {
        std::unique_ptr<StandardRoot> made(new StandardRoot);
        benchmark::DoNotOptimize(&made);
    }
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
BENCHMARK(BM_CastShared)->Name("handle cast to derived/std::dynamic_pointer_cast");
BENCHMARK(BM_CountUpAndDown)->Name("handle cast to derived/bare");
BENCHMARK(BM_MakeFrom<Strong, Tolmen::StrongPtr<Interface, Root>, Deep>)
    ->Name("handle cast to a deep interface/ours");
BENCHMARK(BM_CastSharedToInterface)
    ->Name("handle cast to a deep interface/std::dynamic_pointer_cast");
BENCHMARK(BM_CastStatically)->Name("handle cast to a deep interface/bare, static cast and copy");
BENCHMARK(BM_MoveHandle)->Name("handle move there and back/ours");
BENCHMARK(BM_MoveShared)->Name("handle move there and back/std::shared_ptr");
BENCHMARK(BM_MakeObject)->Name("handle make and end object/ours");
BENCHMARK(BM_MakeStandardObject)->Name("handle make and end object/std::shared_ptr");
BENCHMARK(BM_MakeShared)->Name("handle make and end object/std::make_shared");
BENCHMARK(BM_MakeBareObject)->Name("handle make and end object/bare");

} // namespace
} // namespace QuorlBenchmark
