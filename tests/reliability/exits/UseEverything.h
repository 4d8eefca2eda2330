#pragma once

#include <quorl/foundation/ApplicationQuitter.h>
#include <quorl/foundation/VGlobals.h>
#include <quorl/kit/HostQueue.h>
#include <quorl/modules/VModules.h>
#include <quorl/modules/VSaveable.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VRequest.h>
#include <quorl/registry/VCreatorCategory.h>
#include <quorl/registry/VInputCreator.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/services/VLogger.h>
#include <quorl/services/VUndoStack.h>
#include <quorl/slots/TypedSlotCreator.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VValueParameter.h>
#include <quorl/tasks/VScheduler.h>
#include <quorl/tasks/VThreadCreator.h>
#include <quorl/values/ValuePool.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace QuorlTest
{

/// Counts its updates.
class Counting final : public Quorl::VObject
{
public:
    explicit Counting(const std::string& objectName) : VObject(objectName, 0, {})
    {
        enableRequestProcessing();
    }

    bool update(Quorl::VRequest& /*request*/, double /*precision*/) override
    {
        ++updates;
        return true;
    }

    int updates = 0;
};

inline Quorl::RefPtr<Quorl::VParameter> makeNumber(const std::string& name)
{
    const Quorl::RefPtr<Quorl::VValue<double>> value(new Quorl::VValue<double>(1.0));
    return Quorl::RefPtr<Quorl::VParameter>(new Quorl::VValueParameter<double>(value, name));
}

/// Ends the process where the kernel does not do what it should, whatever the stage of the process.
inline void require(bool isTrue, const char* what)
{
    if (isTrue) return;
    std::printf("%s: not so\n", what);
    std::fflush(stdout);
    std::abort();
}

inline void useNetwork()
{
    using namespace Quorl;
    const RefPtr<Counting> source(new Counting("source"));
    const RefPtr<Counting> sink(new Counting("sink"));
    const RefPtr<VParameter> parameter = makeNumber("number");
    source->registerOutput(parameter, "number");
    // Refused once nobody can object any more: the list of subscribers has gone.
    const bool isConnected =
        sink->addParameter("number", 0, makeNumber("own"), false)->attachSource(parameter);

    const RefPtr<ValuePool> pool(new ValuePool("a context"));
    VRequest request(pool, false);
    require(sink->init_request(request, 1.0) && sink->updates == 1, "a network runs");
    require(source->updates == (isConnected ? 1 : 0), "what is connected runs");
    sink->schedule(1.0, pool);
    VScheduler::execute(1.0);
    require(sink->updates == 1, "nothing runs twice");
    for (const RefPtr<Counting>& object : {source, sink}) object->VManagedObject::remove();
}

inline void useTables()
{
    using namespace Quorl;
    bool isRead = false;
    const auto value = VValueCreator::create("double", "2.5", isRead);
    // Their creators end with the library that has them; nothing is made behind that.
    require(!value || (isRead && value->Text() == "2.5"), "values are made by the type's name");
    VManagedObject::find(typeid(VObject), "nobody");
    VModules::isLoadable("nowhere");
    VSaveable::GlobalState().getSaver("nothing");
    VUndoStack::GlobalUndoStack().undo();
    VCreatorCategory::getProperties("none");
    TypedSlotCreator::getTypedSlotCreator("none");
    findBestVInputCreator(typeid(double), RefPtr<VCreationPreferences>());
    VGlobals::theGlobals().quit();
    HostQueue::drain();
}

inline void useChannels()
{
    using namespace Quorl;
    VLogger::enter("everything");
    VLogger::print(0, "said to those who listen");
    VLogger::leave();
    VActionNotifier::StatusInfo("done");
}

/// Does a little of all that the kernel can do.
inline void useEverything()
{
    useNetwork();
    useTables();
    useChannels();
}

} // namespace QuorlTest
