#include <quorl/modules/LoadScope.h>

#include <quorl/modules/VModule.h>

namespace Quorl
{
namespace
{

constinit const LoadScope* theInnermost = nullptr;

} // namespace

LoadScope::LoadScope(const VModule& module, Phase phase)
    : module_(module), phase_(phase), outer_(theInnermost)
{
    module_.self.referer->takeBoth(); // a handle would end a module that is being constructed
    theInnermost = this;
}

LoadScope::~LoadScope()
{
    theInnermost = outer_;
    module_.self.referer->dropBoth();
}

RefPtr<VModule> LoadScope::find(const string& path)
{
    for (const LoadScope* scope = theInnermost; scope; scope = scope->outer_)
        if (scope->module_.path == path) return RefPtr<VModule>(&scope->module_);
    return {};
}

WeakPtr<VModule> LoadScope::innermost()
{
    return theInnermost ? WeakPtr<VModule>(&theInnermost->module_) : WeakPtr<VModule>();
}

const VModule* LoadScope::inStaticInitialisers()
{
    for (const LoadScope* scope = theInnermost; scope; scope = scope->outer_)
        if (scope->phase_ == Phase::StaticInitialisers) return &scope->module_;
    return nullptr;
}

} // namespace Quorl
