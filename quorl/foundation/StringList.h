#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/RefPtr.h>

#include <list>
#include <string>

namespace Tolmen
{

/// A list of texts that can be held by handles.
class TOLMEN_API StringList : public ReferenceBase<StringList>, public std::list<std::string>
{
public:
    ~StringList() override;
};

extern template class ReferenceBase<StringList>;

} // namespace Tolmen
