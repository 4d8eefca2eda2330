#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Counter.h>
#include <quorl/foundation/NameIndex.h>
#include <quorl/foundation/RefPtr.h>

#include <functional>
#include <list>
#include <map>
#include <string_view>
#include <utility>

namespace Quorl
{

class PriorityWalk;

/// One domain: which object bears a name, and which objects have a priority.
///
/// | an entry of the name table is | it has                     | comes from, goes to             |
/// |-------------------------------|----------------------------|---------------------------------|
/// | empty                         | nothing                    | the cache; inserted: live       |
/// | cached                        | the path of a module       | the cache, a module's unloading |
/// | live                          | a path, maybe, and an object | insertion; unloaded: cached   |
///
/// Each name in the priority index has an entry in the name table, but not the other way round: a
/// cached entry is in no priority until its object is inserted.
///
/// The name table is read and entered like a plain map. Beside it stands an index by which names
/// are found in a constant time: it learns of entries as they are looked for, but not that they go.
/// So the map itself is private, and entries are erased by the operations of this class alone.
///
/// What an entry held ends when the table is whole, and may ask it.
///
/// The counter tells the walks under way; nothing reads it. Threads: no lock.
class QUORL_API VCreatorMap : std::map<string, RefPtr<VCreatorBaseInfo>, std::less<string>>,
                              public Tolmen::ReferenceBase<VCreatorMap>,
                              public Tolmen::Counter
{
    using NameTable = std::map<string, RefPtr<VCreatorBaseInfo>, std::less<string>>;

public:
    using NameTable::const_iterator;
    using NameTable::const_reverse_iterator;
    using NameTable::iterator;
    using NameTable::key_type;
    using NameTable::mapped_type;
    using NameTable::reverse_iterator;
    using NameTable::size_type;
    using NameTable::value_type;
    using Entry = value_type;

    /// What stands in the priority index: a name.
    class Line : public string
    {
    public:
        explicit Line(const string& name) : string(name) {}

    private:
        friend class VCreatorMap;

        mutable Entry* entry_ = nullptr; // null until it was looked for, and if there is none
    };
    using Priorities = std::multimap<int, Line>;

    VCreatorMap();
    VCreatorMap(const VCreatorMap&) = delete;
    VCreatorMap& operator=(const VCreatorMap&) = delete;
    ~VCreatorMap() override;

    using NameTable::at;
    using NameTable::begin;
    using NameTable::cbegin;
    using NameTable::cend;
    using NameTable::contains;
    using NameTable::count;
    using NameTable::crbegin;
    using NameTable::crend;
    using NameTable::emplace;
    using NameTable::emplace_hint;
    using NameTable::empty;
    using NameTable::end;
    using NameTable::equal_range;
    using NameTable::find;
    using NameTable::insert;
    using NameTable::insert_or_assign;
    using NameTable::lower_bound;
    using NameTable::rbegin;
    using NameTable::rend;
    using NameTable::size;
    using NameTable::try_emplace;
    using NameTable::upper_bound;
    using NameTable::operator[];

    Entry* lookUp(const string& name) const; ///< null if there is none
    Entry* lookUp(const Line& line) const;   ///< the same for the name of a line of this domain
    Entry& entered(const string& name);      ///< made if there is none

    void erase(const_iterator entry);
    size_type erase(const string& name);
    void clear();

    /// Erases an entry and its first line in the priority index, and drops the object.
    /// \return whether there was one, which is said on standard output if there was none.
    bool remove(const string& name);

    /// Adds a line to the priority index, behind those of equal priority. Walks that stand ahead of
    /// it will reach it.
    void addPriority(int priority, const string& name);

    /// Erases the first line with that name in the priority index. Walks that stand on it go on
    /// behind it.
    void removePriority(const string& name);

    /// As `removePriority` and `addPriority`, one after the other; but a line that is there moves,
    /// which cannot fail.
    void changePriority(int priority, const string& name);

    /// The object of that name; null if there is none that is alive.
    RefPtr<VManagedObject> liveCreator(const string& name) const;

    /// The priority index; equal ones in the order of insertion.
    const Priorities& priorities() const { return priorities_; }

private:
    friend class PriorityWalk;

    using LinesByName = std::multimap<std::pair<std::string_view, int>, Priorities::const_iterator>;

    void forget(const Entry& entry);
    LinesByName::const_iterator firstLineOf(const string& name) const;

    mutable Tolmen::NameIndex<Entry> index_;
    Priorities priorities_;

    // The lines of each name in the order in which they stand in the index, so that the first is
    // found without a walk. Names are those of the lines.
    LinesByName linesByName_;

    std::list<PriorityWalk*> walks_; // under way; not owned
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VCreatorMap>;
} // namespace Tolmen
