#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/registry/VManagedDomainObject.h>

#include <list>

namespace Quorl
{

/// Turns files of one format into objects of the network. The kernel has none; modules derive them.
///
/// What a loader gives is a creator that stands for what was loaded, and from which the object is
/// made; it can make more of them.
///
/// Threads: loaders and the download handler run on the caller's thread. No lock.
class QUORL_API VLoader : public VManagedDomainObject<VLoader>
{
public:
    static constexpr std::size_t kMostRecent = 256;

    /// The report on a load. A reason means that it failed.
    struct LoadSuccess
    {
        string loader; ///< the one that failed
        string file;   ///< the file, or the reference, that could not be loaded
        string reason;
    };

    VLoader(); ///< not in the registry; the derived class calls `insert`

    /// Enters the loader in its domain.
    VLoader(const string& name, int priority);
    ~VLoader() override;

    /// Whether this loader takes the file, as a rule by its suffix. \return a reason if not.
    virtual LoadSuccess check(const string& file) = 0;

    /// Reads the file.
    /// \param success receives the reason of a failure.
    /// \param name for the object that is going to be made; may be empty.
    /// \return a creator of objects; null without a reason counts as no failure.
    virtual RefPtr<VManagedObject> load(LoadSuccess& success, const string& file,
                                        const string& name) = 0;

    /// Has the first loader, by priority, that takes the file read it, and makes an object of it.
    ///
    /// A reference is a plain file name, or a size in bytes and a location: "10@http://host/name"
    /// is the local file "name", "10@local@http://host/name" the local file "local". Unless that
    /// file has the size, the download handler is called, again and again until it answers true or
    /// the size is right. Each look at the file leaves a line on standard error.
    /// \param success receives what failed, and why. Subscribers of the action channel hear of it.
    /// \param name of the object; if empty, the creator's.
    /// \return null if it failed, and if the loader gave no creator.
    /// \throws std::out_of_range for a size that is no 64-bit number.
    static RefPtr<VObject> Load(LoadSuccess& success, const string& url, const string& name);

    /// The same, with a warning to the subscribers of the action channel if it failed.
    static RefPtr<VObject> LoadWithWarning(const string& origin, const string& url,
                                           const string& name);

    std::list<string> recent; ///< references that were loaded, newest first; at most `kMostRecent`
};

extern template class VManagedDomainObject<VLoader>;

} // namespace Quorl
