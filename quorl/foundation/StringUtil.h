#pragma once

#include <string>

namespace Tolmen
{

/// Small operations on texts of any character.
struct StringUtil
{
    /// \return a copy of `text` in which each `a` has become a `b`.
    template <class C>
    static std::basic_string<C> subst(const std::basic_string<C>& text, C a, C b)
    {
        std::basic_string<C> result(text);
        for (C& character : result)
            if (character == a) character = b;
        return result;
    }

    template <class C>
    static bool starts_with(const std::basic_string<C>& text, const std::basic_string<C>& head)
    {
        return text.starts_with(head);
    }

    /// Appends the fields of `text` to `out`. The text ends before the first `end` in it. Each
    /// `separator` closes a field; one without characters is only made if `keepEmpty`. What is left
    /// behind the last separator is a field, but an empty rest never is.
    /// \return the number of fields appended.
    template <class C, class L>
    static int split(const std::basic_string<C>& text, L& out, C separator, bool keepEmpty, C end)
    {
        using Text = std::basic_string<C>;
        const Text considered = text.substr(0, text.find(end));
        int count = 0;
        typename Text::size_type begin = 0;
        while (begin < considered.size())
        {
            const auto close = considered.find(separator, begin);
            if (close == Text::npos || close > begin || keepEmpty)
            {
                out.push_back(considered.substr(begin, close - begin));
                ++count;
            }
            if (close == Text::npos) break;
            begin = close + 1;
        }
        return count;
    }
};

} // namespace Tolmen
