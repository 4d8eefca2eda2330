#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>
#include <quorl/registry/VAcceptList.h>
#include <quorl/tasks/VScheduler.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

/// What it costs to make objects, to find them and to wire them, in a registry of 100 to 10,000.
/// Where the time for one object, or creator, stays, the whole grows linearly.

namespace QuorlBenchmark
{
namespace
{

using Quorl::RefPtr;
using Quorl::VManagedObject;
using Quorl::VObject;

constexpr std::int64_t kFewest = 100;
constexpr std::int64_t kMost = 10000;
constexpr std::int64_t kMostFound = 100000;
constexpr std::int64_t kMostCreators = 1000;

/// An object with an output and an input of the same type.
class Link final : public VObject
{
public:
    using VObject::VObject;

    bool update(Quorl::VRequest& /*request*/, double /*precision*/) override
    {
        ++updates;
        return true;
    }

    const Quorl::InputSlot<double> in{*this, "in"};
    const Quorl::OutputSlot<double> out{*this, "out", 0.0, {}};
    std::int64_t updates = 0;
};

std::string nameOf(std::int64_t number)
{
    return "object " + std::to_string(number);
}

std::vector<std::string> names(std::int64_t count)
{
    std::vector<std::string> all;
    for (std::int64_t number = 0; number < count; ++number) all.push_back(nameOf(number));
    return all;
}

/// Objects in the registry. They leave it at its end.
class Population
{
public:
    explicit Population(std::int64_t count)
    {
        for (const std::string& name : names(count)) objects.emplace_back(new Link(name, 0, {}));
    }
    Population(const Population&) = delete;
    Population& operator=(const Population&) = delete;
    ~Population()
    {
        for (const RefPtr<Link>& object : objects) object->VManagedObject::remove();
    }

    std::vector<RefPtr<Link>> objects;
};

void BM_CreateAndRemove(benchmark::State& state)
{
    Quorl::VCreator<Link> creator("Benchmark/Link");
    const std::vector<std::string> wanted = names(state.range(0));
    const Tolmen::Intercube context;
    for (auto _ : state)
    {
        for (const std::string& name : wanted) creator.create(name, context);
        for (const std::string& name : wanted)
            if (!VManagedObject::remove(typeid(VObject), name))
                state.SkipWithError("an object was not there");
    }
}

/// Stands in a domain of its own, and has nothing but its name.
class Entry final : public Quorl::VManagedDomainObject<Entry>
{
public:
    explicit Entry(const std::string& wantedName) { insert(wantedName, 0); }
};

void BM_InsertAndRemove(benchmark::State& state)
{
    const std::vector<std::string> wanted = names(state.range(0));
    for (auto _ : state)
    {
        for (const std::string& name : wanted) new Entry(name);
        for (const std::string& name : wanted) VManagedObject::remove(typeid(Entry), name);
    }
    if (VManagedObject::size(typeid(Entry)) != 0) state.SkipWithError("objects were left");
}

void BM_InsertInMap(benchmark::State& state)
{
    const std::vector<std::string> wanted = names(state.range(0));
    std::map<std::string, std::shared_ptr<std::string>> byName;
    std::multimap<int, std::string> byPriority;
    for (auto _ : state)
    {
        for (const std::string& name : wanted)
        {
            byName.emplace(name, std::make_shared<std::string>(name));
            byPriority.emplace(0, name);
        }
        for (const std::string& name : wanted) byName.erase(name);
        byPriority.clear();
    }
}

void BM_Find(benchmark::State& state)
{
    const Population population(state.range(0));
    const std::vector<std::string> wanted = names(state.range(0));
    for (auto _ : state)
        for (const std::string& name : wanted)
            if (!VManagedObject::find(typeid(VObject), name))
                state.SkipWithError("an object was not found");
}

void BM_FindInMap(benchmark::State& state)
{
    std::map<std::string, std::shared_ptr<std::string>> byName;
    const std::vector<std::string> wanted = names(state.range(0));
    for (const std::string& name : wanted) byName.emplace(name, std::make_shared<std::string>());
    for (auto _ : state)
        for (const std::string& name : wanted)
        {
            const std::shared_ptr<std::string> found = byName.find(name)->second;
            benchmark::DoNotOptimize(found.get());
        }
}

void BM_FindInHashMap(benchmark::State& state)
{
    std::unordered_map<std::string, std::shared_ptr<std::string>> byName;
    const std::vector<std::string> wanted = names(state.range(0));
    for (const std::string& name : wanted) byName.emplace(name, std::make_shared<std::string>());
    for (auto _ : state)
        for (const std::string& name : wanted)
        {
            const std::shared_ptr<std::string> found = byName.find(name)->second;
            benchmark::DoNotOptimize(found.get());
        }
}

struct CountObjects final : Quorl::VManagedObjectIterator
{
    bool apply(int /*priority*/, const RefPtr<VManagedObject>& /*object*/,
               const std::string& /*name*/) override
    {
        ++count;
        return true;
    }
    std::int64_t count = 0;
};

void BM_Traverse(benchmark::State& state)
{
    const Population population(state.range(0));
    CountObjects visitor;
    for (auto _ : state) VManagedObject::traverse(typeid(VObject), visitor);
    if (visitor.count != state.iterations() * state.range(0))
        state.SkipWithError("not all objects were visited");
}

void BM_TraverseMap(benchmark::State& state)
{
    std::multimap<int, std::shared_ptr<std::string>> byPriority;
    for (const std::string& name : names(state.range(0)))
        byPriority.emplace(0, std::make_shared<std::string>(name));
    for (auto _ : state)
        for (const auto& [priority, object] : byPriority)
        {
            const std::shared_ptr<std::string> visited = object;
            benchmark::DoNotOptimize(visited.get());
        }
}

void BM_TraverseVector(benchmark::State& state)
{
    std::vector<std::shared_ptr<std::string>> byPriority;
    for (const std::string& name : names(state.range(0)))
        byPriority.push_back(std::make_shared<std::string>(name));
    for (auto _ : state)
        for (const auto& object : byPriority)
        {
            const std::shared_ptr<std::string> visited = object;
            benchmark::DoNotOptimize(visited.get());
        }
}

struct CountOutputs final : VObject::OutputObjectIterator
{
    bool apply(const RefPtr<VObject>& /*object*/, const std::type_info& /*type*/,
               const RefPtr<Quorl::VSlot>& /*slot*/) override
    {
        ++count;
        return true;
    }
    std::int64_t count = 0;
};

void BM_FindOutputObjects(benchmark::State& state)
{
    const Population population(state.range(0));
    CountOutputs visitor;
    for (auto _ : state) VObject::findOutputObjects(typeid(double), visitor);
    if (visitor.count != state.iterations() * state.range(0))
        state.SkipWithError("not all outputs were visited");
}

/// Plugs each object into the one before it, then into the one behind it.
void BM_Connect(benchmark::State& state)
{
    const Population population(state.range(0));
    const auto& objects = population.objects;
    const std::size_t count = objects.size();
    std::size_t step = 1;
    for (auto _ : state)
    {
        step = count - step;
        for (std::size_t number = 0; number < count; ++number)
        {
            const Link& provider = *objects[(number + step) % count];
            if (!objects[number]->Connect(provider.out.slot()->Parameter))
                state.SkipWithError("nothing was connected");
        }
    }
}

void BM_GetAcceptors(benchmark::State& state)
{
    std::vector<RefPtr<Quorl::VCreatorBase>> creators;
    for (std::int64_t number = 0; number < state.range(0); ++number)
        creators.emplace_back(
            new Quorl::VCreator<Link>("Benchmark/Link " + std::to_string(number),
                                      {.accepts = {typeid(double)}, .isPinned = false}));
    const Population population(1);
    for (auto _ : state)
    {
        const auto ways = Quorl::VAcceptList::getAcceptors(population.objects[0]);
        if (!ways || ways->size() != creators.size()) state.SkipWithError("not all accepted");
    }
    for (const auto& creator : creators) creator->VManagedObject::remove();
}

/// Objects that have nothing to do, so that what is measured is the list and a request.
void BM_ScheduleAndExecute(benchmark::State& state)
{
    const Population population(state.range(0));
    const RefPtr<Quorl::ValuePool> pool(new Quorl::ValuePool);
    const auto runAll = [&] {
        for (const RefPtr<Link>& object : population.objects) object->schedule(1.0, pool);
        return Quorl::VScheduler::execute(1.0);
    };
    if (runAll() != state.range(0)) state.SkipWithError("not all objects ran");
    for (auto _ : state)
        if (runAll() != 0) state.SkipWithError("an unchanged object ran");
}

void BM_RequestEach(benchmark::State& state)
{
    const Population population(state.range(0));
    const RefPtr<Quorl::ValuePool> pool(new Quorl::ValuePool);
    const auto runAll = [&] {
        int modified = 0;
        for (const RefPtr<Link>& object : population.objects)
        {
            Quorl::VRequest request(pool, false);
            if (object->init_request(request, 1.0)) ++modified;
        }
        return modified;
    };
    runAll();
    for (auto _ : state)
        if (runAll() != 0) state.SkipWithError("an unchanged object ran");
}

/// 100, 1000 and 10,000 objects.
void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->RangeMultiplier(10)->Range(kFewest, kMost)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(BM_CreateAndRemove)->Name("create, remove/ours")->Apply(sizes);
BENCHMARK(BM_InsertAndRemove)->Name("insert, remove/ours")->Apply(sizes);
BENCHMARK(BM_InsertInMap)->Name("insert, remove/std::map")->Apply(sizes);
BENCHMARK(BM_Find)->Name("find each by name/ours")->Apply(sizes)->Arg(kMostFound);
BENCHMARK(BM_FindInMap)->Name("find each by name/std::map")->Apply(sizes)->Arg(kMostFound);
BENCHMARK(BM_FindInHashMap)
    ->Name("find each by name/bare, hash map")
    ->Apply(sizes)
    ->Arg(kMostFound);
BENCHMARK(BM_Traverse)->Name("traverse/ours")->Apply(sizes);
BENCHMARK(BM_TraverseMap)->Name("traverse/std::multimap")->Apply(sizes);
BENCHMARK(BM_TraverseVector)->Name("traverse/bare, vector")->Apply(sizes);
BENCHMARK(BM_FindOutputObjects)->Name("findOutputObjects/ours")->Apply(sizes);
BENCHMARK(BM_Connect)->Name("Connect each/ours")->Apply(sizes);
BENCHMARK(BM_GetAcceptors)
    ->Name("getAcceptors/ours")
    ->RangeMultiplier(10)
    ->Range(10, kMostCreators)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ScheduleAndExecute)->Name("schedule, execute/ours")->Apply(sizes);
BENCHMARK(BM_RequestEach)->Name("schedule, execute/requests alone")->Apply(sizes);

} // namespace
} // namespace QuorlBenchmark
