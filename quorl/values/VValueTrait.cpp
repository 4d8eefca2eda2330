#include <quorl/values/VValueTrait.h>

#include <quorl/foundation/StringUtil.h>
#include <quorl/values/LocaleIndependentStrtod.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace Quorl
{
namespace
{

template <class T>
string formatted(const char* format, T datum)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), format, datum);
    return text.data();
}

/// As the "C" locale has it, whichever one the process has: what reads it knows no other.
string written(double datum, std::chars_format format, int precision)
{
    std::array<char, 64> text{}; // the longest is a float: a sign, 39 digits, a point, 6 digits
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), datum, format, precision);
    return {text.data(), end.ptr};
}

} // namespace

bool VValueTrait<char>::setValueFromText(char& datum, const string& text)
{
    if (text.size() != 1) return false;
    datum = text.front();
    return true;
}

string VValueTrait<char>::Text(char datum)
{
    return datum == '\0' ? string() : string(1, datum);
}

bool VValueTrait<short>::setValueFromText(short& datum, const string& text)
{
    datum = static_cast<std::int16_t>(std::atoi(text.c_str()));
    return true;
}

string VValueTrait<short>::Text(short datum)
{
    return formatted("%d", datum);
}

bool VValueTrait<int>::setValueFromText(int& datum, const string& text)
{
    datum = std::atoi(text.c_str());
    return true;
}

string VValueTrait<int>::Text(int datum)
{
    return formatted("%d", datum);
}

bool VValueTrait<unsigned int>::setValueFromText(unsigned int& datum, const string& text)
{
    datum = static_cast<std::uint32_t>(std::stoul(text));
    return true;
}

string VValueTrait<unsigned int>::Text(unsigned int datum)
{
    return formatted("%u", datum);
}

bool VValueTrait<long long>::setValueFromText(long long& datum, const string& text)
{
    // Deliberate: what was written with 64 bits is read with 32, then widened with its sign.
    datum = static_cast<std::int32_t>(std::atol(text.c_str()));
    return true;
}

string VValueTrait<long long>::Text(long long datum)
{
    return formatted("%lld", datum);
}

bool VValueTrait<float>::setValueFromText(float& datum, const string& text)
{
    datum = static_cast<float>(Zelm_locale_independent_strtod(text.c_str(), nullptr));
    return true;
}

string VValueTrait<float>::Text(float datum)
{
    return written(static_cast<double>(datum), std::chars_format::fixed, 6);
}

bool VValueTrait<double>::setValueFromText(double& datum, const string& text)
{
    datum = Zelm_locale_independent_strtod(text.c_str(), nullptr);
    return true;
}

string VValueTrait<double>::Text(double datum)
{
    return written(datum, std::chars_format::general, std::numeric_limits<double>::max_digits10);
}

bool VValueTrait<string>::setValueFromText(string& datum, const string& text)
{
    datum = Tolmen::StringUtil::subst(text, '\v', '\n');
    return true;
}

string VValueTrait<string>::Text(const string& datum)
{
    return datum;
}

const char* VValueTrait<string>::OneLine()
{
    return "oneline";
}

const char* VValueTrait<string>::MultiLine()
{
    return "multiline";
}

bool VValueTrait<VGraph>::setValueFromText(VGraph& /*datum*/, const string& /*text*/)
{
    return false;
}

string VValueTrait<VGraph>::Text(const VGraph& /*datum*/)
{
    return {};
}

bool VValueTrait<VThreadManager>::setValueFromText(VThreadManager& /*datum*/,
                                                   const string& /*text*/)
{
    return false;
}

string VValueTrait<VThreadManager>::Text(const VThreadManager& /*datum*/)
{
    return {};
}

} // namespace Quorl
