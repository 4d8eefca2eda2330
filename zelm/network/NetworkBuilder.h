#pragma once

#include "LoadedNetwork.h"
#include "NetworkDocument.h"

#include <quorl/foundation/Intercube.h>

#include <string>

namespace Zelm
{

/// Makes the network that a document describes: its objects in their order, then the connections,
/// the values, and the contexts. A context that is there already under its name is shared.
/// \param info what the creator of the main object is told.
/// \throws NetworkError; nothing of the network is left then.
RefPtr<LoadedNetwork> buildNetwork(const NetworkDocument& document, const Tolmen::Intercube& info);

/// Adds a context to a network. Its variables are made at once: one that is made when it is first
/// read is younger than the object that reads it, which would then run again.
/// A context that is there already under its name is shared.
RefPtr<Quorl::ValuePool> addContext(LoadedNetwork& network, const std::string& name);

/// The object that stands for a network: the first that is requested, or else the last one.
/// \pre there are objects.
const std::string& mainObjectOf(const NetworkDocument& document);

/// Gives an input a value and tells whoever follows it; in a context if the parameter has a value
/// of its own there, else for all.
/// \throws NetworkError, without a place, if there is no such input, it is connected, or has
/// another type.
void setInput(const Quorl::VObject& object, const std::string& input,
              const RefPtr<Quorl::ValuePool>& context, const Json& json);
void setInputText(const Quorl::VObject& object, const std::string& input,
                  const RefPtr<Quorl::ValuePool>& context, const std::string& text);

/// Whether an input has that value already, as far as a file can tell.
bool hasInputText(const Quorl::VObject& object, const std::string& input,
                  const RefPtr<Quorl::ValuePool>& context, const std::string& text);

/// Whether an input shows a parameter of its own object, so that it has a value of its own.
bool isOwnInput(const Quorl::VObject& object, const Quorl::VSlot& slot);

} // namespace Zelm
