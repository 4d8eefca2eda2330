#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>

namespace Quorl
{

/// The text form of a type: `setValueFromText` reads a datum, `Text` writes it. A module that has
/// values of a type of its own specialises it with the same two functions.
///
/// The rules of the kernel's types are not symmetric, and are kept as they are for the sake of
/// files that were written with them. No reader of a number refuses a text: what is none
/// reads as 0 (`unsigned int` throws), what follows one is not looked at. `char` takes one
/// character, and graphs and managers of threads take nothing.
template <class T>
struct VValueTrait;

/// One character; reading refuses any other length. The character 0 is written as an empty text.
template <>
struct QUORL_API VValueTrait<char>
{
    static bool setValueFromText(char& datum, const string& text);
    static string Text(char datum);
};

/// "%d"; reads as `atoi`, cut to 16 bits.
template <>
struct QUORL_API VValueTrait<short>
{
    static bool setValueFromText(short& datum, const string& text);
    static string Text(short datum);
};

/// "%d"; reads as `atoi`.
template <>
struct QUORL_API VValueTrait<int>
{
    static bool setValueFromText(int& datum, const string& text);
    static string Text(int datum);
};

/// "%u"; reads as `std::stoul` in base 10, cut to 32 bits.
/// \throws std::invalid_argument if there is no number, std::out_of_range; both with "stoul".
template <>
struct QUORL_API VValueTrait<unsigned int>
{
    static bool setValueFromText(unsigned int& datum, const string& text);
    static string Text(unsigned int datum);
};

/// "%lld"; reads as `atol`, of which 32 bits count.
template <>
struct QUORL_API VValueTrait<long long>
{
    static bool setValueFromText(long long& datum, const string& text);
    static string Text(long long datum);
};

/// "%f", so six decimals, in no locale; reads in none.
template <>
struct QUORL_API VValueTrait<float>
{
    static bool setValueFromText(float& datum, const string& text);
    static string Text(float datum);
};

/// 17 significant digits, in no locale. Reading gives the datum back but for its last bits, as the
/// parser rounds more than once; 0 if it was below 1e-290.
template <>
struct QUORL_API VValueTrait<double>
{
    static bool setValueFromText(double& datum, const string& text);
    static string Text(double datum);
};

/// The text itself. On reading only, a vertical tab stands for a line feed.
template <>
struct QUORL_API VValueTrait<string>
{
    static bool setValueFromText(string& datum, const string& text);
    static string Text(const string& datum);

    static const char* OneLine();   ///< the keyword of a parameter that wants one line
    static const char* MultiLine(); ///< the keyword of a parameter that takes several
};

/// Has no text form: nothing is read, and an empty text is written.
template <>
struct QUORL_API VValueTrait<VGraph>
{
    static bool setValueFromText(VGraph& datum, const string& text);
    static string Text(const VGraph& datum);
};

/// Has no text form, either.
template <>
struct QUORL_API VValueTrait<VThreadManager>
{
    static bool setValueFromText(VThreadManager& datum, const string& text);
    static string Text(const VThreadManager& datum);
};

} // namespace Quorl
