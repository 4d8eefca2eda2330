#include <quorl/kit/Network.h>
#include <quorl/modules/DownloadHandler.h>
#include <quorl/modules/ZelmSaver.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValuePoolCreator.h>
#include <tests/reliability/exits/UseEverything.h>

#include <utility>

/// Leaves something in each table of the kernel. What is owned there uses the kernel once more when
/// it ends.
namespace
{

using namespace Quorl;

/// Part of each class below. Says who has ended.
struct UsesAllAtItsEnd
{
    explicit UsesAllAtItsEnd(const char* owner) : name(owner) {}
    UsesAllAtItsEnd(const UsesAllAtItsEnd&) = delete;
    UsesAllAtItsEnd& operator=(const UsesAllAtItsEnd&) = delete;
    ~UsesAllAtItsEnd()
    {
        QuorlTest::useEverything();
        std::printf("%s\n", name);
    }
    const char* const name;
};

struct Object final : VObject
{
    explicit Object(const char* objectName) : VObject(objectName, 0, {}), last(objectName)
    {
        enableRequestProcessing();
    }
    const UsesAllAtItsEnd last;
};

struct Logger final : VLogger
{
    void printmsg(const string&, int, int, const string&, unsigned int, const WeakPtr<VTask>&,
                  const string&) override
    {
    }
    const UsesAllAtItsEnd last{"the logger"};
};

struct Subscriber final : VActionNotifier
{
    const UsesAllAtItsEnd last{"the subscriber"};
};

struct Quitter final : ApplicationQuitter
{
    void quit() override {}
    const UsesAllAtItsEnd last{"the quitter"};
};

struct Action final : VUndoAction
{
    explicit Action(const char* name) : VUndoAction("left"), last(name) {}
    bool undo() override { return true; }
    const UsesAllAtItsEnd last;
};

struct Saver final : ZelmSaver
{
    Saver() : ZelmSaver(".left") {}
    bool save(const std::string& /*file*/) override { return true; }
    const UsesAllAtItsEnd last{"the saver"};
};

struct Handler final : DownloadHandler
{
    bool download(const string&, long long, const string&, long long) override { return false; }
    const UsesAllAtItsEnd last{"the handler"};
};

struct PoolCreator final : ValuePoolCreator
{
    RefPtr<ValuePool> createPool(const string& /*name*/) override { return {}; }
    const UsesAllAtItsEnd last{"the pool creator"};
};

struct Watcher final : ValueNotifier
{
    void valueChanged(const RefPtr<VValueBase>&, const WeakPtr<ValuePool>&,
                      const ValueNotifierList*, const ValueMap*) override
    {
    }
    const UsesAllAtItsEnd last{"the watcher"};
};

void leaveObjects()
{
    const RefPtr<VObject> inRegistry(new Object("the object in the registry"));
    const RefPtr<VParameter> parameter = QuorlTest::makeNumber("left");
    inRegistry->registerOutput(parameter, "left");
    static const RefPtr<Watcher> watcher(new Watcher);
    parameter->addNotifier(watcher);
    const RefPtr<VObject> reader(new Object("the reader"));
    reader->addParameter("left", 0, QuorlTest::makeNumber("own"), false)->attachSource(parameter);

    static const RefPtr<ValuePool> pool(new ValuePool("left"));
    setText(*reader, "left", "3", pool);
    const RefPtr<VObject> scheduled(new Object("the scheduled object"));
    scheduled->schedule(1.0, pool);
    scheduled->VManagedObject::remove(); // the scheduler owns it
}

template <class T>
void leaveActive()
{
    static const RefPtr<T> subscriber(new T);
    subscriber->activate();
}

} // namespace

int main()
{
    QuorlTest::useEverything();
    leaveObjects();
    leaveActive<Logger>();
    leaveActive<Subscriber>();
    static const RefPtr<Quitter> quitter(new Quitter);
    static const RefPtr<VUndoStack> stack(new VUndoStack);
    stack->AddAction(new Action("the action of a stack"));
    VUndoStack::GlobalUndoStack().AddAction(new Action("the action of the stack for all"));
    VSaveable::GlobalState().addSaver("left", new Saver);
    DownloadHandler::setDownloadHandler(new Handler);
    VGlobals::theGlobals().poolCreators.insert(RefPtr<ValuePoolCreator>(new PoolCreator));
    HostQueue::post([] {});
    std::puts("main ends");
}
