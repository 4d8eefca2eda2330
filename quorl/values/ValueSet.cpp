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
    // In one piece: a text that throws leaves no open quote.
    const string text = value ? Tolmen::StringUtil::subst(value->Text(), '\'', '"') : string();
    key += '\'' + text + '\'';
}

bool lessValueSetPtr::operator()(const RefPtr<ValueSet>& left, const RefPtr<ValueSet>& right) const
{
    return left && right && left->key < right->key;
}

} // namespace Quorl
