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

/// Part of each class below.
struct UsesAllAtItsEnd
{
    UsesAllAtItsEnd() = default;
    UsesAllAtItsEnd(const UsesAllAtItsEnd&) = delete;
    UsesAllAtItsEnd& operator=(const UsesAllAtItsEnd&) = delete;
    ~UsesAllAtItsEnd()
    {
        QuorlTest::useEverything();
        ++ended;
    }
    static inline constinit int ended = 0;
};

struct Object final : VObject
{
    explicit Object(const std::string& objectName) : VObject(objectName, 0, {})
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
    const UsesAllAtItsEnd last;
};

struct Subscriber final : VActionNotifier
{
    const UsesAllAtItsEnd last;
};

struct Quitter final : ApplicationQuitter
{
    void quit() override {}
    const UsesAllAtItsEnd last;
};

struct Action final : VUndoAction
{
    Action() : VUndoAction("left") {}
    bool undo() override { return true; }
    const UsesAllAtItsEnd last;
};

struct Saver final : ZelmSaver
{
    Saver() : ZelmSaver(".left") {}
    bool save(const std::string& /*file*/) override { return true; }
    const UsesAllAtItsEnd last;
};

struct Handler final : DownloadHandler
{
    bool download(const string&, long long, const string&, long long) override { return false; }
    const UsesAllAtItsEnd last;
};

struct PoolCreator final : ValuePoolCreator
{
    RefPtr<ValuePool> createPool(const string& /*name*/) override { return {}; }
    const UsesAllAtItsEnd last;
};

struct Watcher final : ValueNotifier
{
    void valueChanged(const RefPtr<VValueBase>&, const WeakPtr<ValuePool>&,
                      const ValueNotifierList*, const ValueMap*) override
    {
    }
    const UsesAllAtItsEnd last;
};

void leaveObjects()
{
    const RefPtr<VObject> inRegistry(new Object("in the registry"));
    const RefPtr<VParameter> parameter = QuorlTest::makeNumber("left");
    inRegistry->registerOutput(parameter, "left");
    static const RefPtr<Watcher> watcher(new Watcher);
    parameter->addNotifier(watcher);
    const RefPtr<VObject> reader(new Object("a reader"));
    reader->addParameter("left", 0, QuorlTest::makeNumber("own"), false)->attachSource(parameter);

    static const RefPtr<ValuePool> pool(new ValuePool("left"));
    setText(*reader, "left", "3", pool);
    const RefPtr<VObject> scheduled(new Object("scheduled"));
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
    stack->AddAction(new Action);
    VUndoStack::GlobalUndoStack().AddAction(new Action);
    VSaveable::GlobalState().addSaver("left", new Saver);
    DownloadHandler::setDownloadHandler(new Handler);
    VGlobals::theGlobals().poolCreators.insert(RefPtr<ValuePoolCreator>(new PoolCreator));
    HostQueue::post([] {});
    std::puts("main ends");
}
