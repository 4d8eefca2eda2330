#pragma once

#include <quorl/Forward.h>

#include <string>

namespace Zelm
{

/// Saves an object by that of its savers which writes files of this suffix. The file is whole, or
/// as it was before.
/// \throws NetworkError
void saveObject(Quorl::VObject& object, const std::string& file);

} // namespace Zelm
