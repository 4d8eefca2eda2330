#pragma once

#include <quorl/foundation/Export.h>

#include <string>
#include <vector>

namespace Tolmen::Platform
{

inline constexpr char kPathSeparator = '/';

/// The names in a directory that end in `suffix`, in the order of their bytes; those of directories
/// are among them. Empty also if the directory cannot be read.
/// \param directory with a separator at its end.
TOLMEN_API std::vector<std::string> namesIn(const std::string& directory,
                                            const std::string& suffix);

/// Gives a file another name, unless that is taken. \return whether it has it now.
TOLMEN_API bool renameFile(const std::string& from, const std::string& to);

} // namespace Tolmen::Platform
