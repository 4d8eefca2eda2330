#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

/// What a host that builds a network says again and again.
namespace Quorl
{

/// The creator of a key such as "Grid/Hillshade"; this may load its module.
/// \return null if there is none.
QUORL_API RefPtr<VCreatorBase> findCreator(const string& key);

/// Gives what an input shows a value by its text, and tells whoever follows it.
/// \param pool the context; null for all contexts.
/// \return false if there is no such input, or the text is refused.
QUORL_API bool setText(const VSlotContainer& object, const string& input, const string& text,
                       const RefPtr<ValuePool>& pool = {});

/// Connects a child to a parent in all ways in which the creator of the child accepts it.
/// \pre a creator made the child.
/// \return the name of the first way that failed; empty if none did.
QUORL_API string connectInAllWays(const RefPtr<VObject>& parent, const RefPtr<VObject>& child);

} // namespace Quorl
