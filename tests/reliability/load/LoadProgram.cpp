#include <quorl/kit/Network.h>
#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/VModules.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VRequest.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VValueParameter.h>
#include <quorl/tasks/VScheduler.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValuePool.h>

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

/// Large numbers of everything, twice or more: what the process takes for them the second time it
/// has from the first. Prints what each costs, and ends with 1 where memory grows that should not.
///
///     load DIVISOR MODULE
///
/// \param DIVISOR by which all numbers are divided; 1 for the whole.
/// \param MODULE the path of a module, to be loaded again and again.
namespace
{

using namespace Quorl;

/// Memory in bytes: what the process has, and what of it is allocated. What is free in it hides
/// from the first what the second tells.
struct Memory
{
    long resident = 0;
    long allocated = 0;
};

Memory memory()
{
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    const struct mallinfo2 heap = ::mallinfo2();
    return {resident * ::sysconf(_SC_PAGESIZE), static_cast<long>(heap.uordblks + heap.hblkhd)};
}

constexpr double kKilo = 1024.0;
constexpr double kMega = 1024.0 * kKilo;
bool theMemoryIsFlat = true;

/// Does something several times. Beyond the first, what is allocated may only grow by `permitted`
/// bytes for each of `count`; what the process has, also by how the heap is cut up.
void measure(const char* what, long count, const std::function<void()>& act, double permitted = 0.0)
{
    constexpr int kRounds = 3;
    constexpr double kSlackOfAllocated = 256 * kKilo;
    const Memory before = memory();
    act();
    const Memory once = memory();
    const auto start = std::chrono::steady_clock::now();
    for (int round = 1; round < kRounds; ++round) act();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    const Memory then = memory();

    const auto times = static_cast<double>(count * (kRounds - 1));
    const auto grown = static_cast<double>(then.resident - once.resident);
    const auto kept = static_cast<double>(then.allocated - once.allocated);
    const double slack = 2 * kMega + 0.02 * static_cast<double>(once.resident);
    const bool isFlat =
        grown <= slack + permitted * times && kept <= kSlackOfAllocated + permitted * times;
    std::printf("%-14s %10ld, %9.0f ns each, %7.1f MiB once, %+6.1f MiB then, %+8.1f KiB of it in "
                "use%s\n",
                what, count, 1e9 * time.count() / times,
                static_cast<double>(once.resident - before.resident) / kMega, grown / kMega,
                kept / kKilo, isFlat ? "" : ", NOT FLAT");
    std::fflush(stdout);
    theMemoryIsFlat = theMemoryIsFlat && isFlat;
}

[[noreturn]] void giveUp(const char* what)
{
    std::printf("%s\n", what);
    std::exit(1);
}

RefPtr<VValueParameter<double>> makeNumber(const std::string& name)
{
    return RefPtr<VValueParameter<double>>(
        new VValueParameter<double>(RefPtr<VValue<double>>(new VValue<double>(0.0)), name));
}

/// Has an input, and counts its updates.
class Counting final : public VObject
{
public:
    explicit Counting(const std::string& objectName) : VObject(objectName, 0, {})
    {
        input = addParameter("input", 0, makeNumber("input"), false);
        enableRequestProcessing();
    }

    bool update(VRequest& /*request*/, double /*precision*/) override
    {
        ++updates;
        return true;
    }

    RefPtr<VSlot> input;
    long updates = 0;
};

void makeObjects(long count)
{
    std::vector<RefPtr<VObject>> objects;
    objects.reserve(static_cast<std::size_t>(count));
    for (long number = 0; number < count; ++number)
        objects.push_back(RefPtr<VObject>(new Counting("object " + std::to_string(number))));
    for (const RefPtr<VObject>& object : objects) object->VManagedObject::remove();
}

/// Each has a value of its own, and the object runs in it.
void makeContexts(long count)
{
    const RefPtr<Counting> object(new Counting("in all contexts"));
    std::vector<RefPtr<ValuePool>> pools;
    for (long number = 0; number < count; ++number)
    {
        pools.push_back(RefPtr<ValuePool>(new ValuePool("context " + std::to_string(number))));
        setText(*object, "input", std::to_string(number), pools.back());
        VRequest request(pools.back(), false);
        object->init_request(request, 1.0);
    }
    if (object->updates != count) giveUp("an object did not run in each context");
    object->VManagedObject::remove();
}

struct Listener final : ValueNotifier
{
    void valueChanged(const RefPtr<VValueBase>&, const WeakPtr<ValuePool>&,
                      const ValueNotifierList*, const ValueMap*) override
    {
        ++heard;
    }
    long heard = 0;
};

void notify(long count)
{
    const RefPtr<VValueParameter<double>> parameter = makeNumber("told of");
    const RefPtr<Listener> listener(new Listener);
    parameter->addNotifier(listener);
    for (long number = 0; number < count; ++number)
        parameter->notify(parameter->DefaultValue(), {}, {}, nullptr, nullptr);
    if (listener->heard != count) giveUp("a notification got lost");
}

void reload(const std::string& module, long count)
{
    LeaveItems remover;
    for (long number = 0; number < count; ++number)
        if (!ReloadVModule(module, remover)) giveUp("a module was not loaded again");
}

/// Each turn changes a value, and runs what depends on it.
void runTurns(long count)
{
    const RefPtr<Counting> source(new Counting("source"));
    const RefPtr<Counting> sink(new Counting("sink"));
    const RefPtr<VValueParameter<double>> output = makeNumber("output");
    source->registerOutput(output, "output");
    sink->input->attachSource(output);
    const RefPtr<ValuePool> pool(new ValuePool("main loop"));
    for (long number = 0; number < count; ++number)
    {
        source->input->Parameter->touchValue(pool);
        sink->schedule(1.0, pool);
        VScheduler::execute(1.0);
    }
    if (source->updates != count) giveUp("a turn did not run what had changed");
    for (const RefPtr<Counting>& object : {source, sink}) object->VManagedObject::remove();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) giveUp("load DIVISOR MODULE");
    const long divisor = std::atol(arguments[1]);
    const std::string module = arguments[2];
    if (divisor < 1 || !LoadVModule(module)) giveUp("no divisor, or no module");

    constexpr long kTurnsOfADay = 24L * 3600 * 60;
    const auto part = [divisor](long number) { return std::max(number / divisor, 10L); };
    const long objects = part(1'000'000);
    const long contexts = part(10'000);
    const long notifications = part(10'000'000);
    const long reloads = part(100'000);
    const long turns = part(kTurnsOfADay);
    measure("objects", objects, [=] { makeObjects(objects); });
    measure("contexts", contexts, [=] { makeContexts(contexts); });
    measure("notifications", notifications, [=] { notify(notifications); });
    measure("turns", turns, [=] { runTurns(turns); });
    // Each leaves a line of the creator's name in the registry's index of priorities.
    constexpr double kLine = 208.0;
    measure("reloads", reloads, [&] { reload(module, reloads); }, kLine);
    return theMemoryIsFlat ? 0 : 1;
}
