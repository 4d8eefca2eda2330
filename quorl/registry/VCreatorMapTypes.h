#pragma once

#include <quorl/Export.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/TypeInfo.h>
#include <quorl/registry/VCreatorMap.h>

#include <map>
#include <typeinfo>

namespace Quorl
{

/// The table of all domains, read and entered like a map. A domain is never removed, for its
/// objects refer to it: so an entry has its place for good, though its handle may become another.
class QUORL_API VCreatorMapTypes : std::map<Tolmen::TypeInfo, RefPtr<VCreatorMap>>
{
    using Table = std::map<Tolmen::TypeInfo, RefPtr<VCreatorMap>>;

public:
    using Table::const_iterator;
    using Table::iterator;
    using Table::key_type;
    using Table::mapped_type;
    using Table::size_type;
    using Table::value_type;

    VCreatorMapTypes() = default;
    VCreatorMapTypes(const VCreatorMapTypes&) = delete;
    VCreatorMapTypes& operator=(const VCreatorMapTypes&) = delete;
    ~VCreatorMapTypes() = default;

    using Table::at;
    using Table::begin;
    using Table::contains;
    using Table::count;
    using Table::empty;
    using Table::end;
    using Table::find;
    using Table::size;
    using Table::operator[];
};

/// Made at first use; lasts until the clean-up of statics.
QUORL_API VCreatorMapTypes& VCreatorTypes();

/// The domain of a type, which is made if there is none.
QUORL_API VCreatorMap* VCreators(const std::type_info& type);

} // namespace Quorl
