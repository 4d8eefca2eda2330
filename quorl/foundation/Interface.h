#pragma once

#include <quorl/foundation/InterfaceBase.h>

namespace Tolmen
{

/// A service of the type `T`, usually the class that derives from it: a cube keeps it under
/// `typeid(T)`, whatever is derived further.
template <class T>
class TOLMEN_TEMPLATE_API Interface : public InterfaceBase
{
public:
    const std::type_info& getInterfaceDomain() const override { return typeid(T); }
};

} // namespace Tolmen
