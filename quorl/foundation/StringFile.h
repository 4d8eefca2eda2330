#pragma once

#include <quorl/foundation/Export.h>

#include <cstdio>
#include <string>

namespace Tolmen
{

/// Reads a text as `fputstring` wrote it: its length in bytes as an unsigned 64-bit little-endian
/// number, then its bytes, which may include zeros.
/// \return the text; what there was of it, if the file ends early. The stated length is not
/// believed: memory is only taken for what was read.
TOLMEN_API std::string fgetstring(std::FILE* file);

/// Writes a text; an empty one is exactly 8 zero bytes.
/// \return whether all of it was written.
TOLMEN_API bool fputstring(const std::string& text, std::FILE* file);

} // namespace Tolmen
