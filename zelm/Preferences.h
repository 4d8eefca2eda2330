#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <zelm/network/Json.h>

#include <string>

namespace Zelm
{

/// The words of preferences with their weights; null if there are none.
Json preferencesAsJson(const Quorl::RefPtr<Quorl::VCreationPreferences>& preferences);

/// The same for people: the words, with those of the weights that are not 1.
std::string wordsOf(const Json& preferences);

} // namespace Zelm
