#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>

namespace Quorl
{

/// Reads which creators of modules that are not loaded provide which types, and says each on
/// standard output. To be done before modules are loaded.
///
/// The file, little-endian, strings as `Tolmen::fputstring` writes them:
///
/// | item                                | size   |
/// |-------------------------------------|--------|
/// | "ZelmInputCreatorCache\n" and a 0   | 23     |
/// | number of groups                    | 8      |
/// | for each group: number of entries   | 8      |
/// | for each entry: type name, provider | string |
/// | a number that is printed only       | 4      |
/// | number of properties                | 8      |
/// | for each property: word             | string |
/// | and weight                          | 8      |
///
/// \return false if the file cannot be opened, begins otherwise or ends early; the entries read up
/// to there stay.
QUORL_API bool LoadInputCreatorCache(const string& path);

/// Deliberate: writes nothing. The file is supplied from outside of the kernel. \return true.
QUORL_API bool CreateInputCreatorCache(const string& path);

} // namespace Quorl
