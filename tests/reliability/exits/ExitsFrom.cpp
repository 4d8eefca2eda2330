#include <quorl/kit/Network.h>
#include <quorl/modules/ZelmSaver.h>
#include <quorl/values/ValueNotifier.h>
#include <tests/reliability/exits/UseEverything.h>

#include <functional>
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

struct LeavesAtItsEnd final : VUndoAction
{
    LeavesAtItsEnd() : VUndoAction("leaves at its end") {}
    ~LeavesAtItsEnd() override { endTheProcess(); }
    bool undo() override { return true; }
};

struct LeavesInItsUnction final : VUndoAction
{
    LeavesInItsUnction() : VUndoAction("leaves before its end") {}
    bool undo() override { return true; }
    void extremeUnction() override { endTheProcess(); }
};

struct Observer final : ValueNotifier
{
    void valueChanged(const RefPtr<VValueBase>&, const WeakPtr<ValuePool>&,
                      const ValueNotifierList*, const ValueMap*) override
    {
        endTheProcess();
    }
};

struct Saver final : ZelmSaver
{
    Saver() : ZelmSaver(".left") {}
    bool save(const std::string& /*file*/) override { return true; }
};

struct SaverVisitor final : VSaveable::SaveIterator
{
    bool apply(const string&, const RefPtr<ZelmSaver>&) override { endTheProcess(); }
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

void fromAction()
{
    VUndoStack::GlobalUndoStack().AddAction(new LeavesAtItsEnd);
    VUndoStack::GlobalUndoStack().setSize(0);
}

void fromUnction()
{
    const RefPtr<VUndoAction> action(new LeavesInItsUnction);
}

void fromObserver()
{
    const RefPtr<VParameter> parameter = QuorlTest::makeNumber("watched");
    const RefPtr<Observer> observer(new Observer);
    parameter->addNotifier(observer);
    const RefPtr<QuorlTest::Counting> owner(new QuorlTest::Counting("owner"));
    owner->addParameter("watched", 0, parameter, false);
    setText(*owner, "watched", "2", RefPtr<ValuePool>(new ValuePool("left")));
}

void fromSlots()
{
    const RefPtr<QuorlTest::Counting> owner(new QuorlTest::Counting("owner"));
    owner->addParameter("met", 0, QuorlTest::makeNumber("met"), false);
    owner->iterate_inputs(
        std::function<bool(VSlot&, int)>([](VSlot&, int) -> bool { endTheProcess(); }));
}

void fromSavers()
{
    VSaveable::GlobalState().addSaver("left", new Saver);
    SaverVisitor visitor;
    VSaveable::GlobalState().iterateSavers(visitor);
}

void fromQueue()
{
    HostQueue::post([] { endTheProcess(); });
    HostQueue::drain();
}

constexpr std::pair<std::string_view, void (*)()> kPlaces[] = {
    {"update", &fromUpdate},         {"turn", &fromTurn},       {"logger", &fromLogger},
    {"subscriber", &fromSubscriber}, {"undo", &fromUndo},       {"walk", &fromWalk},
    {"action", &fromAction},         {"unction", &fromUnction}, {"observer", &fromObserver},
    {"slots", &fromSlots},           {"savers", &fromSavers},   {"queue", &fromQueue},
};

} // namespace

int main(int count, char** arguments)
{
    QuorlTest::useEverything();
    for (const auto& [name, act] : kPlaces)
        if (count == 2 && name == arguments[1]) act();
    return 1;
}
