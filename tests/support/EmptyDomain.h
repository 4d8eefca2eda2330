#pragma once

#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>

#include <string>
#include <typeinfo>

namespace QuorlTest
{

/// Removes all entries of a domain, and the lines of its priority index that outlive their names.
inline void emptyDomain(const std::type_info& type)
{
    Quorl::VCreatorMap& domain = *Quorl::VCreators(type);
    while (!domain.empty()) domain.remove(std::string(domain.begin()->first));
    while (!domain.priorities().empty())
        domain.removePriority(std::string(domain.priorities().begin()->second));
}

} // namespace QuorlTest
