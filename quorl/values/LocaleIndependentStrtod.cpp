#include <quorl/values/LocaleIndependentStrtod.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

namespace
{

constexpr long kCountedDigits = 18;        // what two integers of nine digits hold
constexpr long kLargestExponent = 511;     // the sum of the table's powers
constexpr long kExponentLimit = 100000000; // beyond it, digits change nothing any more

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Consumes one sign. \return whether it was a minus.
bool takeSign(const char*& at)
{
    const bool isNegative = *at == '-';
    if (*at == '-' || *at == '+') ++at;
    return isNegative;
}

struct Mantissa
{
    const char* begin; // digits, with a point among them or not
    long digits;
    long pointPosition; // digits before the point

    /// What the power of ten is without an explicit exponent, once the counted digits are taken as
    /// an integer.
    long exponent() const { return pointPosition - std::min(digits, kCountedDigits); }

    double fraction() const
    {
        const long counted = std::min(digits, kCountedDigits);
        std::int64_t leading = 0;
        std::int64_t lastNine = 0;
        const char* at = begin;
        for (long left = counted; left > 0; ++at)
        {
            if (*at == '.') continue;
            std::int64_t& part = left > 9 ? leading : lastNine;
            part = 10 * part + (*at - '0');
            --left;
        }
        return static_cast<double>(leading) * 1000000000.0 + static_cast<double>(lastNine);
    }
};

Mantissa scanMantissa(const char*& at)
{
    const char* const begin = at;
    const char* point = nullptr;
    for (; isDigit(*at) || (*at == '.' && !point); ++at)
        if (*at == '.') point = at;
    const long digits = (at - begin) - (point ? 1 : 0);
    return {begin, digits, point ? point - begin : digits};
}

long takeExponent(const char*& at)
{
    if (*at != 'e' && *at != 'E') return 0;
    ++at;
    const bool isNegative = takeSign(at);
    long exponent = 0;
    for (; isDigit(*at); ++at)
        if (exponent < kExponentLimit) exponent = 10 * exponent + (*at - '0');
    return isNegative ? -exponent : exponent;
}

double powerOfTen(long magnitude)
{
    constexpr std::array kPowers{1e1, 1e2, 1e4, 1e8, 1e16, 1e32, 1e64, 1e128, 1e256};
    double power = 1.0;
    for (const double factor : kPowers)
    {
        if (magnitude & 1) power *= factor;
        magnitude >>= 1;
    }
    return power;
}

double scaled(double fraction, long exponent)
{
    long magnitude = exponent < 0 ? -exponent : exponent;
    if (magnitude > kLargestExponent)
    {
        magnitude = kLargestExponent;
        errno = ERANGE;
    }
    const double power = powerOfTen(magnitude);
    return exponent < 0 ? fraction / power : fraction * power;
}

} // namespace

double Zelm_locale_independent_strtod(const char* text, char** end)
{
    const char* at = text;
    while (isBlank(*at)) ++at;
    const bool isNegative = takeSign(at);
    const Mantissa mantissa = scanMantissa(at);

    double number = 0.0;
    if (mantissa.digits == 0)
        at = text;
    else
    {
        const long exponent = mantissa.exponent() + takeExponent(at);
        number = scaled(mantissa.fraction(), exponent);
    }
    if (end) *end = const_cast<char*>(at);
    return isNegative ? -number : number;
}
