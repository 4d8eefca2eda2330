#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/FileInfo.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/VGlobals.h>

#include <memory>

namespace Tolmen::Platform
{
class SharedLibrary;
} // namespace Tolmen::Platform

namespace Quorl
{

/// One attempt to load a module file. The file is looked at as data first, and none of its code
/// runs unless it carries the word of this kernel. The library is unloaded with the last handle.
///
/// While its static initialisers run, `VManagedObject::CurrentLoadModule` is its path, by which
/// creators learn where they come from. Objects that these make may hold the module and be its last
/// holders, so it is made with `new`.
///
/// Threads: one loads modules at a time.
class QUORL_API VModule : public Tolmen::ReferenceBase<VModule>
{
public:
    /// Loads the file, or tells in `errorText` why not.
    explicit VModule(const string& modulePath);
    ~VModule() override;

    bool isValid() const; ///< whether it is loaded

    /// A function that the module itself exports; null if there is none.
    void* getFunction(const string& name) const;

    bool haveNewerPlugin() const; ///< whether the file has been changed since

    /// The next load of its path is of the file as it is then, though somebody still has this one.
    void leaveBehind();

    /// From now on no module is unloaded any more: the process ends, and objects of their classes
    /// may last longer than the handles.
    static void keepAllLoaded();

    const string path;
    string sourceInfo; ///< the directory that it was built from, if it tells
    const Tolmen::FileInfo fileInfo;

private:
    friend class VModuleHold;

    std::unique_ptr<Tolmen::Platform::SharedLibrary> library_; // null unless it is loaded

    // Its place in the list of those that were let go of: to enter it must not fail.
    RefPtr<VModule> nextDeparting_;
    bool isDeparting_ = false;

public:
    string errorText;

private:
    bool isCompatible();
    void load();
};

/// What is known of a module file.
struct VGlobals::ModuleInfo
{
    RefPtr<VModule> module; ///< null if it is known from the cache alone, or was unloaded
    bool loadable = false;  ///< Deliberate: the kernel sets it nowhere.
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VModule>;
} // namespace Tolmen
