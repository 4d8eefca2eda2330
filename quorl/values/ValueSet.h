#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// A list of values reduced to one text, so that combinations of values can be compared and sorted.
class QUORL_API ValueSet : public Tolmen::ReferenceBase<ValueSet>
{
public:
    ValueSet();
    ~ValueSet() override;

    /// Appends the text of a value in single quotes; those within it become double quotes, so that
    /// it cannot end early. Of a dead value only the quotes are appended. Nothing stands between
    /// two values.
    void addValue(const WeakPtr<VValueBase>& value);

    string key;
};

/// The order of sets by their keys. A dead set is equivalent to every other.
struct QUORL_API lessValueSetPtr
{
    bool operator()(const RefPtr<ValueSet>& left, const RefPtr<ValueSet>& right) const;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::ValueSet>;
} // namespace Tolmen
