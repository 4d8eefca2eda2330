#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

namespace Maps
{

/// The text form of an enumeration whose values count from 0: a word for each. Other texts are
/// refused.
/// \tparam kWords an array of texts
template <class Choice, const auto& kWords>
struct WordForm
{
    static bool setValueFromText(Choice& datum, const std::string& text)
    {
        const auto found = std::ranges::find(kWords, text);
        if (found == kWords.end()) return false;
        datum = static_cast<Choice>(found - kWords.begin());
        return true;
    }

    static std::string Text(Choice datum)
    {
        return std::string(kWords[static_cast<std::size_t>(datum)]);
    }
};

} // namespace Maps
