#include <quorl/registry/VCreatorMap.h>

#include <quorl/registry/PriorityWalk.h>
#include <quorl/registry/VCreatorBaseInfo.h>

#include <cstdio>
#include <limits>
#include <utility>

namespace Tolmen
{
template class ReferenceBase<Quorl::VCreatorMap>;
} // namespace Tolmen

namespace Quorl
{

VCreatorMap::VCreatorMap() = default;

VCreatorMap::~VCreatorMap()
{
    clear(); // as long as this can be asked
}

VCreatorMap::Entry* VCreatorMap::lookUp(const string& name) const
{
    Entry* entry = index_.find(name);
    if (entry || index_.size() == size()) return entry;
    // Somebody has entered names unseen.
    auto& table = const_cast<VCreatorMap&>(*this); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    const auto found = table.find(name);
    if (found == table.end()) return nullptr;
    entry = &*found;
    index_.insert(*entry);
    return entry;
}

VCreatorMap::Entry* VCreatorMap::lookUp(const Line& line) const
{
    if (!line.entry_) line.entry_ = lookUp(static_cast<const string&>(line));
    return line.entry_;
}

VCreatorMap::Entry& VCreatorMap::entered(const string& name)
{
    if (Entry* const known = lookUp(name)) return *known;
    const auto made = try_emplace(name).first;
    try
    {
        index_.insert(*made);
    }
    catch (...)
    {
        NameTable::erase(made);
        throw;
    }
    return *made;
}

void VCreatorMap::forget(const Entry& entry)
{
    index_.erase(entry);
    const std::string_view name = entry.first;
    constexpr int kLowest = std::numeric_limits<int>::min();
    for (auto known = linesByName_.lower_bound(std::pair(name, kLowest));
         known != linesByName_.end() && known->first.first == name; ++known)
        known->second->second.entry_ = nullptr;
}

void VCreatorMap::erase(const_iterator entry)
{
    forget(*entry);
    const auto last = NameTable::extract(entry); // ends what it holds when the table is whole
}

VCreatorMap::size_type VCreatorMap::erase(const string& name)
{
    const auto entry = find(name);
    if (entry == end()) return 0;
    erase(entry);
    return 1;
}

void VCreatorMap::clear()
{
    index_.clear();
    for (const auto& [priority, line] : priorities_) line.entry_ = nullptr;
    NameTable former;
    NameTable::swap(former); // ends what it holds when the table is whole
}

bool VCreatorMap::remove(const string& name)
{
    const auto entry = find(name);
    if (entry == end())
    {
        std::printf("Could not find %s...\n", name.c_str());
        removePriority(name);
        return false;
    }
    forget(*entry);
    const auto last = NameTable::extract(entry); // ends the object when the tables are whole
    removePriority(last.key());
    return true;
}

void VCreatorMap::addPriority(int priority, const string& name)
{
    const Priorities::const_iterator line = priorities_.emplace(priority, Line(name));
    try
    {
        linesByName_.emplace(std::pair(std::string_view(line->second), priority), line);
    }
    catch (...)
    {
        priorities_.erase(line); // nobody would find it again
        throw;
    }
    for (PriorityWalk* const walk : walks_) walk->noteAdded(line);
}

/// \return the end if it has none.
VCreatorMap::LinesByName::const_iterator VCreatorMap::firstLineOf(const string& name) const
{
    constexpr int kLowest = std::numeric_limits<int>::min();
    const auto first = linesByName_.lower_bound(std::pair(std::string_view(name), kLowest));
    return first != linesByName_.end() && first->first.first == name ? first : linesByName_.end();
}

void VCreatorMap::changePriority(int priority, const string& name)
{
    const auto first = firstLineOf(name);
    if (first == linesByName_.end()) return addPriority(priority, name);
    for (PriorityWalk* const walk : walks_) walk->leave(first->second);
    auto entry = linesByName_.extract(first);
    auto line = priorities_.extract(entry.mapped());
    line.key() = priority;
    entry.key().second = priority;
    entry.mapped() = priorities_.insert(std::move(line));
    const auto moved = linesByName_.insert(std::move(entry))->second;
    for (PriorityWalk* const walk : walks_) walk->noteAdded(moved);
}

void VCreatorMap::removePriority(const string& name)
{
    const auto first = firstLineOf(name);
    if (first == linesByName_.end()) return;
    const Priorities::const_iterator line = first->second;
    for (PriorityWalk* const walk : walks_) walk->leave(line);
    linesByName_.erase(first);
    priorities_.erase(line);
}

RefPtr<VManagedObject> VCreatorMap::liveCreator(const string& name) const
{
    const Entry* const entry = lookUp(name);
    if (!entry || !entry->second || !entry->second->getCreator()) return {};
    return entry->second->getCreator();
}

} // namespace Quorl
