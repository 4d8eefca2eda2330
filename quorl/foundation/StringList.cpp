#include <quorl/foundation/StringList.h>

namespace Tolmen
{

template class ReferenceBase<StringList>;

StringList::~StringList() = default;

} // namespace Tolmen
