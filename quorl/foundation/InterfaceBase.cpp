#include <quorl/foundation/InterfaceBase.h>

namespace Tolmen
{

template class ReferenceBase<InterfaceIterationParameter>;
template class ReferenceBase<InterfaceBase>;

InterfaceIterationParameter::~InterfaceIterationParameter() = default;

InterfaceBase::~InterfaceBase() = default;

bool InterfaceBase::apply(Intercube& /*cube*/,
                          const RefPtr<InterfaceIterationParameter>& /*parameter*/)
{
    return true;
}

bool InterfaceBase::apply_const(const Intercube& /*cube*/,
                                const RefPtr<InterfaceIterationParameter>& /*parameter*/)
{
    return true;
}

} // namespace Tolmen
