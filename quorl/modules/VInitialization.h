#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>

#include <set>

namespace Quorl
{

/// Why an init routine of a module is called.
enum InitPluginReason : int
{
    InitPluginLoad = 0,
    InitPluginUnload = 1,
    InitPluginReload = 2,
};

/// What the init routine of a module is handed: it tells what the module was built against, and may
/// describe the module.
class QUORL_API VInitialization
{
public:
    /// \param pluginName the stem of the module's file name; not owned.
    explicit VInitialization(const char* pluginName);
    ~VInitialization();

    /// To be called by the routine, with the word that it was built against, before it returns
    /// true.
    /// \return whether the kernel is of that word.
    bool IsCompatible(const char* apiVersion);

    bool acceptable() const; ///< whether a word was told, and is the kernel's

    /// Does nothing in the kernel.
    static void initPlugin(InitPluginReason reason, const char* plugin, const char* directory);

    static const char* ZelmReleaseString; ///< of the kernel

    const char* version = nullptr; ///< as told to `IsCompatible`; not owned
    const char* plugin;
    string author;      ///< for the module to fill, as all below
    string title;       ///< one line
    string description; ///< as long as it takes
    string url;
    long number[4] = {};
    std::set<string> keywords;
};

/// The form of an init routine. It is called `ZELM_INIT_PREFIX` and the stem of the file name.
/// \return whether the module can be used.
using InitRoutine = bool (*)(VInitialization*);

} // namespace Quorl
