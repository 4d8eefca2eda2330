#pragma once

#include "Settings.h"

#include <string>
#include <vector>

namespace Zelm
{

/// What became of a module file.
struct ModuleState
{
    std::string path;
    std::string state;  ///< "loaded", "cached" (known, and loaded when needed), or "refused"
    std::string reason; ///< of a refusal
    std::string source; ///< the folder that it was built from, if it tells
};

/// The module files of the search path: the folders that were asked for, those of ZELM_PLUGIN_PATH,
/// and the installed one. Of two files of one name the first is taken.
class Modules
{
public:
    /// Looks at the folders; loads nothing.
    /// \throws UsageError if a folder that was asked for is not there.
    explicit Modules(const Settings& settings);

    const std::vector<std::string>& folders() const { return folders_; }
    const std::vector<std::string>& files() const { return files_; }

    /// Loads the files that no cache has made known.
    void open();

    /// Loads those, too, that are known from a cache.
    void openAll();

    std::vector<ModuleState> states() const;

    /// Complains of each module that was refused.
    void complain() const;

private:
    void load(const std::string& file);

    std::vector<std::string> folders_;
    std::vector<std::string> files_;
    std::vector<ModuleState> refused_;
};

} // namespace Zelm
