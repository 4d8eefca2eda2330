#include <quorl/services/VScriptable.h>

#include <quorl/foundation/SteadyWalk.h>
#include <quorl/services/VScriptFunctor.h>

namespace Quorl
{

VScriptable::iterator::~iterator() = default;

VScriptable::VScriptable() : functors_(new Table) {}
VScriptable::VScriptable(const VScriptable& /*other*/) : VScriptable() {}
VScriptable::~VScriptable() = default;

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is assigned
VScriptable& VScriptable::operator=(const VScriptable& /*other*/)
{
    return *this;
}

RefPtr<VScriptFunctor> VScriptable::insertFunctor(const string& name,
                                                  const RefPtr<VScriptFunctor>& functor)
{
    return (*functors_)[name] = functor;
}

void VScriptable::removeFunctor(const string& name)
{
    functors_->erase(name);
}

RefPtr<VScriptFunctor> VScriptable::findFunctor(const string& name) const
{
    const auto entry = functors_->find(name);
    return entry == functors_->end() ? RefPtr<VScriptFunctor>() : entry->second;
}

unsigned long long VScriptable::nFunctors() const
{
    return functors_->size();
}

bool VScriptable::iterate(iterator& visitor)
{
    return Tolmen::walkSteadily(*functors_,
                                [&](const string& name, const RefPtr<VScriptFunctor>& functor) {
                                    return visitor.apply(name, functor);
                                });
}

} // namespace Quorl
