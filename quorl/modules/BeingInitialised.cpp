#include <quorl/modules/BeingInitialised.h>

#include <quorl/modules/VModule.h>

namespace Quorl
{
namespace
{

constinit BeingInitialised* theInnermost = nullptr;

} // namespace

BeingInitialised::BeingInitialised(const RefPtr<VModule>& module)
    : module_(module), outer_(theInnermost)
{
    theInnermost = this;
}

BeingInitialised::~BeingInitialised()
{
    theInnermost = outer_;
}

RefPtr<VModule> BeingInitialised::find(const string& path)
{
    for (const BeingInitialised* scope = theInnermost; scope; scope = scope->outer_)
        if (scope->module_->path == path) return scope->module_;
    return {};
}

} // namespace Quorl
