#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/registry/VCreatorProperties.h>

namespace Quorl
{

/// The creators of each category, so that they can be offered as a group. One table for the
/// process; nothing ever leaves it.
///
/// Threads: the one that loads modules. No lock.
class QUORL_API VCreatorCategory
{
public:
    /// Visits creators; true goes on.
    class QUORL_API Iterator
    {
    public:
        virtual ~Iterator();
        virtual bool apply(const WeakPtr<VCreatorBase>& creator) = 0;
    };

    /// Enters a creator, weakly, behind the others of its category. Nothing happens for a dead one.
    static void addCreator(const WeakPtr<VCreatorBase>& creator);

    /// Visits the live creators of a category in the order of registration.
    /// \return the number of visits that answered true; -1 for an unknown category.
    static int iterate(const string& category, Iterator& visitor);

    /// The texts of a category, which is made if there is none. They last as long as the process.
    static VCreatorPropertyBase& getProperties(const string& category);
};

} // namespace Quorl
