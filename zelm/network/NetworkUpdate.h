#pragma once

#include "LoadedNetwork.h"
#include "NetworkDocument.h"

namespace Zelm
{

/// Brings a network from what one document says to what another says, if these differ in values
/// alone: what is equal in both is not touched, and so is not run again.
/// \return false, and nothing is changed, if objects, connections or contexts differ.
/// \throws NetworkError for a value that is refused; others may have been set by then.
bool updateNetwork(LoadedNetwork& network, const NetworkDocument& before,
                   const NetworkDocument& after);

} // namespace Zelm
