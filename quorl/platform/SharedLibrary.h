#pragma once

#include <quorl/foundation/Export.h>

#include <memory>
#include <set>
#include <string>

namespace Tolmen::Platform
{

/// A module file, loaded. Unloads it when destroyed; it is gone when its last owner in the process
/// is.
///
/// Some libraries never leave a process, whatever is asked of the system. The next load of such a
/// file maps a copy of it, so that its initialisers run all the same, and its code is that of the
/// file as it is then. It fails if no copy can be made.
///
/// Threads: one at a time.
class TOLMEN_API SharedLibrary
{
public:
    /// Loads the file at `path`: its static initialisers run before this returns. Its symbols are
    /// its own, and all that it needs must be there.
    explicit SharedLibrary(const std::string& path);
    SharedLibrary(SharedLibrary&&) = delete;
    ~SharedLibrary();

    bool isLoaded() const { return image_ != nullptr; }

    /// A symbol that the library itself defines; null if it does not, or nothing is loaded.
    void* symbol(const std::string& name) const;

    const std::string& error() const { return error_; } ///< the system's words; empty if loaded

    /// Leaves it loaded for as long as the process lasts.
    void stay() { image_ = nullptr; }

    /// The next load of the path maps the file as it is then, though somebody still has this one.
    void leaveBehind();

    struct Image;

private:
    const std::string path_;

    // Made ahead: to unload must not fail.
    const std::string loaderPath_;
    std::set<std::string> resident_; // the path, for the set of those whose next image is a copy

    std::shared_ptr<Image> image_; // with a share of the mapping; null if there is none
    std::string error_;
};

/// Whether a loaded library calls what begins at an address a function, or gives no type: to call
/// data that bears the name of a function would end the process. False where nothing is known of
/// the address, as of null.
TOLMEN_API bool isCode(const void* address);

} // namespace Tolmen::Platform
