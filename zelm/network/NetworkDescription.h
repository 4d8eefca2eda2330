#pragma once

#include "NetworkDocument.h"

namespace Zelm
{

/// Describes all objects of the registry, in the order in which they were made, and all contexts
/// that have names, as they are now. What is as its creator made it is left out, unless the file
/// that it came from told it.
/// \throws NetworkError for what no file can tell: an object that no creator has made, or a text
/// that is not UTF-8.
NetworkDocument describeNetwork();

} // namespace Zelm
