#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>

namespace Quorl
{

/// Loads the module at `path`, so that its creators enter themselves in the registry.
/// \return whether it is loaded. No module can be, as yet.
QUORL_API bool LoadVModule(const string& path);

/// Whether the module at `path` is none of those that are loaded.
QUORL_API bool isModuleLoadable(const string& path);

} // namespace Quorl
