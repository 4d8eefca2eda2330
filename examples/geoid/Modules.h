#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <filesystem>
#include <string>

namespace Geoid
{

/// The modules of a folder, found by scanning it or, faster, by a cache of what an earlier start
/// has found; then a module is loaded when one of its creators is first wanted.
class Modules
{
public:
    /// \param cache the file of the cache, which is written if it is not there, or does not cover
    /// all modules. Empty means none.
    /// \throws GeoidError if the folder holds no modules.
    Modules(const std::filesystem::path& folder, const std::filesystem::path& cache);

    /// The creator of that name, null if there is none. If the cache does not know it, which may
    /// have been cut off, all modules are loaded.
    Quorl::RefPtr<Quorl::VCreatorBase> creator(const std::string& name) const;

    int files() const { return files_; } ///< in the folder
    int opened() const;                  ///< of those, up to now

private:
    int files_;
};

} // namespace Geoid
