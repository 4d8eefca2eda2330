#pragma once

#include <quorl/foundation/Export.h>

namespace Tolmen
{

/// A trace of where each thread was last: a text of the form "file:line", null at the start. A
/// function keeps the old text, sets its own, and puts the old one back at its end.
///
/// The pointer is kept, not the text: it must outlive its time here, as a literal does.
TOLMEN_API void SetLastKnownSourceCodeLine(const char* text);
TOLMEN_API const char* getLastKnownSourceCodeLine();

} // namespace Tolmen
