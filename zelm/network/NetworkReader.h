#pragma once

#include "NetworkDocument.h"

#include <string>

namespace Zelm
{

/// Reads a network file. What can be told from the file alone is checked: its form, that names
/// differ, and that what is referred to is there. Creators and slots are looked at when the network
/// is made.
/// \throws NetworkError
NetworkDocument readNetworkFile(const std::string& file);

/// The same for a text. \param file its name, for messages.
NetworkDocument readNetwork(const std::string& file, const std::string& text);

} // namespace Zelm
