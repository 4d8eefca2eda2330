#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/FileInfo.h>
#include <quorl/foundation/Interface.h>
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
/// creators learn where they come from.
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

    /// From now on no module is unloaded any more: the process ends, and objects of their classes
    /// may last longer than the handles.
    static void keepAllLoaded();

    const string path;
    string sourceInfo; ///< the directory that it was built from, if it tells
    const Tolmen::FileInfo fileInfo;
    string errorText;

private:
    bool isCompatible();
    void load();

    std::unique_ptr<Tolmen::Platform::SharedLibrary> library_; // null unless it is loaded
};

/// What is known of a module file.
struct VGlobals::ModuleInfo
{
    RefPtr<VModule> module; ///< null if it is known from the cache alone, or was unloaded
    bool loadable = false;  ///< Deliberate: the kernel sets it nowhere.
};

/// Keeps a module loaded as long as the object that it is added to lives. What is left of the
/// object's destructor may be code of the module, so that the module is let go of later, when
/// modules are next loaded or unloaded.
///
/// Threads: may end on any.
class QUORL_API VModuleHold : public Tolmen::Interface<VModuleHold>
{
public:
    explicit VModuleHold(const RefPtr<VModule>& held);
    ~VModuleHold() override;

    /// Lets go of the modules whose objects have ended.
    static void letGo();

    const RefPtr<VModule> module;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VModule>;
} // namespace Tolmen
