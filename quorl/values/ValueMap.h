#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <map>
#include <memory>

namespace Quorl
{

/// Values by name: the components of a value, the properties of a parameter, what a notification
/// says of a change.
///
/// Shares the values that are set; a copy of the map has copies of the live ones.
class QUORL_API ValueMap
{
public:
    /// Visits entries; true goes on.
    class QUORL_API iterator
    {
    public:
        virtual ~iterator();
        virtual bool apply(const string& name, const RefPtr<VValueBase>& value);
    };

    ValueMap();
    ValueMap(const ValueMap& source);
    ValueMap& operator=(const ValueMap& source);
    ~ValueMap();

    RefPtr<VValueBase> getValue(const string& name) const; ///< null if there is none
    void setValue(const string& name, const RefPtr<VValueBase>& value);
    unsigned long long nComponents() const; ///< all entries, dead ones too

    /// Visits all entries in the order of names, dead ones too. They may come and go meanwhile,
    /// also by an assignment to the map; the map itself must last.
    /// \return the number of visits that answered true.
    int iterate(iterator& visitor) const;

    /// Becomes a copy of the live values of `source` as components of `container`; those that do
    /// not accept it as their container are left out. With a dead container nothing is left.
    /// \return whether the container is alive.
    bool copyComponents(const ValueMap& source, const WeakPtr<VValueBase>& container);

private:
    using Entries = std::map<string, RefPtr<VValueBase>>;

    Entries& entries(); // made if they are missing
    void clear();

    // Null until the first is set, as in most values; from then on in its place, for walks.
    std::unique_ptr<Entries> entries_;
};

} // namespace Quorl
