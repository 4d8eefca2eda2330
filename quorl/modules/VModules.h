#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/StringList.h>
#include <quorl/registry/VManagedObject.h>

namespace Quorl
{

/// Loads the module at `path`, so that its creators enter themselves in the registry, and calls its
/// init routine.
///
/// A failure is appended to "ZelmError.log" in the working directory, said on standard output, and
/// asked about (`VModules::setErrorDialog`), which may end the process. A module without an init
/// routine is said on standard output and loaded, unless the environment holds
/// ZELM_STRICT_LOADING: then its file is renamed to end in "-noinit". One whose routine refuses is
/// unloaded silently.
/// \return whether it is in the table of modules now.
QUORL_API bool LoadVModule(const string& path);

/// Hands the creators of a module to `remover`, lets go of them, and of the module, which ends it
/// unless somebody else holds it. It stays known.
///
/// All objects of its classes must have ended, or hold the module (`VModuleHold`, as those made by
/// `VCreator` do).
/// \return false if it was never known.
QUORL_API bool UnloadVModule(const string& path, VManagedObject::VRemoveItem& remover);

/// \return whether it was known, and is loaded again.
QUORL_API bool ReloadVModule(const string& path, VManagedObject::VRemoveItem& remover);

/// Loads the files of a directory that end in ".zelm", in the order of their names, and passes over
/// those that are known, which is said on standard output. So is it if no file was found.
/// \param progress called with each path and false before it is loaded; may be null.
/// \param countOnly whether files are counted and nothing more.
/// \param subdirectories of the directory, each of which is opened first; may be null.
/// \return the number of files, those that could not be loaded included.
QUORL_API int openModules(const string& directory, bool (*progress)(const char*, bool) = nullptr,
                          bool countOnly = false,
                          const RefPtr<Tolmen::StringList>& subdirectories = {});

/// The table of modules.
class QUORL_API VModules
{
public:
    /// Visits modules; true goes on.
    class QUORL_API Iterator
    {
    public:
        virtual ~Iterator();
        virtual bool apply(const string& path, const string& modulePath, const string& sourceInfo,
                           const string& errorText) = 0;
    };

    /// Asks what is to be done about a module that could not be loaded.
    /// \return 3 to end the process, 4 not to be asked again, 5 to go on.
    using ErrorDialog = int (*)(const string& caption, const string& text);

    VModules() = delete;

    /// Whether nothing is known of the module, neither from a load nor from the cache.
    static bool isLoadable(const string& path);

    /// Visits the modules that are marked as loadable and alive, by path. The kernel marks none.
    /// \return the number of visits that answered true.
    static int iterate(Iterator& visitor);

    static int countReloadablePlugins(); ///< modules that are loaded and have a newer file

    /// Reloads the modules that have a newer file and are held by the table alone, silently.
    /// \return the number of those that are loaded again.
    static int reloadAllNew();

    /// Makes a module known, so that directories are opened without loading it.
    /// \return whether it is not loaded.
    static bool enableCache(const string& path);

    /// \return null unless it is loaded, or its static initialisers or its init routine run.
    static RefPtr<VModule> find(const string& path);

    /// Asks with another function; null puts the default back, which asks on the terminal.
    /// \return the one before.
    static ErrorDialog setErrorDialog(ErrorDialog dialog);
};

} // namespace Quorl
