#include <quorl/services/VScriptable.h>

#include <quorl/foundation/FindOrNull.h>
#include <quorl/foundation/SteadyChange.h>
#include <quorl/foundation/SteadyWalk.h>
#include <quorl/services/VScriptFunctor.h>

#include <utility>

namespace Quorl
{

VScriptable::iterator::~iterator() = default;

VScriptable::VScriptable() = default;
VScriptable::VScriptable(const VScriptable& /*other*/) : VScriptable() {}

VScriptable::~VScriptable()
{
    Tolmen::endSteadily(functors_);
}

VScriptable::Table& VScriptable::functors() const
{
    if (!functors_) functors_ = std::make_unique<Table>();
    if (insertFirst_) insertThoseOfClass();
    return *functors_;
}

/// May ask for the table, which has only those then that were inserted so far.
void VScriptable::insertThoseOfClass() const
{
    auto* const insert = std::exchange(insertFirst_, nullptr);
    try
    {
        insert(const_cast<VScriptable&>(*this)); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    }
    catch (...)
    {
        insertFirst_ = insert;
        throw;
    }
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is assigned
VScriptable& VScriptable::operator=(const VScriptable& /*other*/)
{
    return *this;
}

RefPtr<VScriptFunctor> VScriptable::insertFunctor(const string& name,
                                                  const RefPtr<VScriptFunctor>& functor)
{
    RefPtr<VScriptFunctor> entered = functor;
    Tolmen::enterSteadily(functors(), name, entered);
    return entered;
}

void VScriptable::removeFunctor(const string& name)
{
    const auto ended = functors().extract(name);
}

RefPtr<VScriptFunctor> VScriptable::findFunctor(const string& name) const
{
    return Tolmen::findOrNull(functors(), name);
}

unsigned long long VScriptable::nFunctors() const
{
    return functors().size();
}

bool VScriptable::iterate(iterator& visitor)
{
    return Tolmen::walkSteadily(functors(),
                                [&](const string& name, const RefPtr<VScriptFunctor>& functor) {
                                    return visitor.apply(name, functor);
                                });
}

} // namespace Quorl
