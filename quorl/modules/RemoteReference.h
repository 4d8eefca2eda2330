#pragma once

#include <quorl/Forward.h>

namespace Quorl
{

/// The local file that a reference means, which is fetched if it has to be; see `VLoader::Load`.
/// Empty if the location names none.
/// \throws std::out_of_range for a size that is no 64-bit number.
string localFileOf(const string& reference);

} // namespace Quorl
