#include <quorl/modules/VModuleHold.h>

#include <quorl/modules/VModule.h>

#include <mutex>
#include <set>
#include <utility>

namespace Quorl
{
namespace
{

/// Modules that somebody has let go of, each once. Tasks end on their own threads.
class Departing
{
public:
    /// Takes a share over: it is never the last one that is dropped here.
    void add(RefPtr<VModule>& module)
    {
        const std::scoped_lock lock(mutex_);
        modules_.insert(module);
        module = RefPtr<VModule>();
    }

    std::set<RefPtr<VModule>> take()
    {
        const std::scoped_lock lock(mutex_);
        return std::exchange(modules_, {});
    }

private:
    std::mutex mutex_;
    std::set<RefPtr<VModule>> modules_;
};

Departing& departing()
{
    static auto& modules = *new Departing; // objects end until the very end
    return modules;
}

} // namespace

VModuleHold::VModuleHold(const RefPtr<VModule>& held) : module_(held) {}

VModuleHold::~VModuleHold()
{
    departing().add(module_);
}

void VModuleHold::letGo()
{
    const std::set<RefPtr<VModule>> modules = departing().take();
}

} // namespace Quorl
