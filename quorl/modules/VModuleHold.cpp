#include <quorl/modules/VModuleHold.h>

#include <quorl/modules/VModule.h>

#include <mutex>
#include <utility>

namespace Quorl
{

/// Modules that somebody has let go of, each once. Tasks end on their own threads.
class VModuleHold::Departing
{
public:
    static Departing& modules()
    {
        static auto& departing = *new Departing; // objects end until the very end
        return departing;
    }

    /// Takes a share over: it is never the last one that is dropped here.
    void add(RefPtr<VModule>& module)
    {
        if (!module) return;
        const std::scoped_lock lock(mutex_);
        if (!std::exchange(module->isDeparting_, true))
        {
            module->nextDeparting_ = first_;
            first_ = module;
        }
        module = RefPtr<VModule>();
    }

    /// \return null if there is none.
    RefPtr<VModule> take()
    {
        const std::scoped_lock lock(mutex_);
        RefPtr<VModule> module = first_;
        if (!module) return {};
        first_ = module->nextDeparting_;
        module->nextDeparting_ = RefPtr<VModule>();
        module->isDeparting_ = false;
        return module;
    }

private:
    std::mutex mutex_;
    RefPtr<VModule> first_;
};

VModuleHold::VModuleHold(const RefPtr<VModule>& held) : module_(held)
{
    Departing::modules(); // made here, as nothing can be made any more where memory has run out
}

VModuleHold::~VModuleHold()
{
    Departing::modules().add(module_);
}

void VModuleHold::letGo()
{
    while (Departing::modules().take())
    {
    }
}

} // namespace Quorl
