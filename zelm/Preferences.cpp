#include "Preferences.h"

#include <quorl/registry/VCreationPreferences.h>

#include <utility>

namespace Zelm
{

Json preferencesAsJson(const Quorl::RefPtr<Quorl::VCreationPreferences>& preferences)
{
    struct Words final : Quorl::VCreationPreferences::ConstIterator
    {
        bool apply(const std::string& word, double weight) override
        {
            json[word] = weight;
            return true;
        }

        Json json = nullptr;
    };
    Words words;
    if (preferences) std::as_const(*preferences).iterate(words);
    return words.json;
}

std::string wordsOf(const Json& preferences)
{
    std::string words;
    for (const auto& [word, weight] : preferences.items())
        words += (words.empty() ? "" : ", ") + word + (weight == 1.0 ? "" : " " + weight.dump());
    return words;
}

} // namespace Zelm
