#pragma once

#include "Story.h"

namespace Zelm
{

/// The inputs of an object in the order in which requests look at them.
std::vector<RefPtr<Quorl::VSlot>> inputsOf(const Quorl::VObject& object);

/// An object and all that its inputs lead to, over ignored ones as well, each once.
std::vector<RefPtr<Quorl::VObject>> upstreamOf(const RefPtr<Quorl::VObject>& object);

} // namespace Zelm
