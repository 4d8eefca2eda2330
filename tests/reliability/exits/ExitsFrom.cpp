#include <tests/reliability/exits/UseEverything.h>

#include <string_view>
#include <utility>

/// Ends the process in the middle of what the kernel does, at the place that is told.
namespace
{

using namespace Quorl;

[[noreturn]] void endTheProcess()
{
    std::puts("leaving");
    std::exit(5);
}

struct Leaving final : VObject
{
    explicit Leaving(const std::string& objectName) : VObject(objectName, 0, {})
    {
        enableRequestProcessing();
    }
    bool update(VRequest& /*request*/, double /*precision*/) override { endTheProcess(); }
};

struct Logger final : VLogger
{
    void printmsg(const string&, int, int, const string&, unsigned int, const WeakPtr<VTask>&,
                  const string&) override
    {
        endTheProcess();
    }
};

struct Subscriber final : VActionNotifier
{
    void status(const string& /*text*/) override { endTheProcess(); }
};

struct Action final : VUndoAction
{
    Action() : VUndoAction("leaves") {}
    bool undo() override { endTheProcess(); }
};

struct Visitor final : VManagedObjectIterator
{
    bool apply(int, const RefPtr<VManagedObject>&, const string&) override { endTheProcess(); }
};

void fromUpdate()
{
    const RefPtr<Leaving> object(new Leaving("leaving"));
    VRequest request(RefPtr<ValuePool>(new ValuePool("left")), false);
    object->init_request(request, 1.0);
}

void fromTurn()
{
    const RefPtr<ValuePool> pool(new ValuePool("left"));
    (new Leaving("scheduled"))->schedule(1.0, pool);
    VScheduler::execute(1.0);
}

void fromLogger()
{
    const RefPtr<Logger> logger(new Logger);
    logger->activate();
    VLogger::print(0, "heard");
}

void fromSubscriber()
{
    const RefPtr<Subscriber> subscriber(new Subscriber);
    subscriber->activate();
    VActionNotifier::StatusInfo("heard");
}

void fromUndo()
{
    VUndoStack stack;
    stack.AddAction(new Action);
    stack.undo();
}

void fromWalk()
{
    new QuorlTest::Counting("met");
    Visitor visitor;
    VManagedObject::traverse(typeid(VObject), visitor);
}

constexpr std::pair<std::string_view, void (*)()> kPlaces[] = {
    {"update", &fromUpdate},         {"turn", &fromTurn}, {"logger", &fromLogger},
    {"subscriber", &fromSubscriber}, {"undo", &fromUndo}, {"walk", &fromWalk},
};

} // namespace

int main(int count, char** arguments)
{
    QuorlTest::useEverything();
    for (const auto& [name, act] : kPlaces)
        if (count == 2 && name == arguments[1]) act();
    return 1;
}
