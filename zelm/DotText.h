#pragma once

#include "Drawing.h"

#include <string>

namespace Zelm
{

/// A drawing in the language of Graphviz.
/// \param withAges whether edges tell the ages of their values.
std::string dotTextOf(const Drawing& drawing, bool withAges);

} // namespace Zelm
