#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// One representation of a script value: its text in one type.
class QUORL_API VScriptTypedValue : public Tolmen::ReferenceBase<VScriptTypedValue>
{
public:
    explicit VScriptTypedValue(const string& text);
    ~VScriptTypedValue() override;

    string Text1; ///< for script engines
    string Text2; ///< for script engines
    string value;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VScriptTypedValue>;
} // namespace Tolmen
