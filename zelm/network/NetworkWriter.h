#pragma once

#include "NetworkDocument.h"

#include <string>

namespace Zelm
{

/// The canonical text of a network: keys in a fixed order, an object a line. What was read from it
/// is written as the same text. Comments are not kept.
/// \throws NetworkError if some text is not UTF-8, which JSON cannot tell.
std::string writtenNetwork(const NetworkDocument& document);

/// Writes the text to a file, which is replaced in one step: there is never half of one.
/// \throws NetworkError if that is not possible; the earlier file stays.
void writeNetworkFile(const NetworkDocument& document, const std::string& file);

} // namespace Zelm
