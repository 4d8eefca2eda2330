#pragma once

#include <quorl/values/VValueTrait.h>

#include <charconv>

namespace Quorl
{

/// "true" and "false"; "1" and "0" are read, too. Any other text is refused.
template <>
struct VValueTrait<bool>
{
    static bool setValueFromText(bool& datum, const string& text)
    {
        const bool isTrue = text == "true" || text == "1";
        if (!isTrue && text != "false" && text != "0") return false;
        datum = isTrue;
        return true;
    }
    static string Text(bool datum) { return datum ? "true" : "false"; }
};

/// Decimal digits, with a minus sign in front if need be; in no locale. A text that is anything
/// else, or a number that is too large, is refused.
template <>
struct VValueTrait<long>
{
    static bool setValueFromText(long& datum, const string& text)
    {
        long number = 0;
        const char* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, number);
        if (error != std::errc() || stop != end) return false;
        datum = number;
        return true;
    }
    static string Text(long datum) { return std::to_string(datum); }
};

} // namespace Quorl
