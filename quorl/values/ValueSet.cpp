#include <quorl/values/ValueSet.h>

#include <quorl/foundation/StringUtil.h>
#include <quorl/values/VValueBase.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::ValueSet>;
} // namespace Tolmen

namespace Quorl
{

ValueSet::ValueSet() = default;
ValueSet::~ValueSet() = default;

void ValueSet::addValue(const WeakPtr<VValueBase>& value)
{
    key += '\'';
    if (value) key += Tolmen::StringUtil::subst(value->Text(), '\'', '"');
    key += '\'';
}

bool lessValueSetPtr::operator()(const RefPtr<ValueSet>& left, const RefPtr<ValueSet>& right) const
{
    return left && right && left->key < right->key;
}

} // namespace Quorl
