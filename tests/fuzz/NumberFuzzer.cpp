#include <quorl/values/LocaleIndependentStrtod.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{

bool isDigit(char letter)
{
    return letter >= '0' && letter <= '9';
}

constexpr long kCountedDigits = 18;

/// How many digits stand before the exponent.
long digitsOf(const std::string& number)
{
    return std::ranges::count_if(number.substr(0, number.find_first_of("eE")), isDigit);
}

/// The same digits without a sign, if there are few enough for all of them to count, and the power
/// of ten is within those that are multiplied up without loss of range.
bool isPlain(const std::string& number)
{
    return number.size() <= kCountedDigits && std::ranges::all_of(number, [](char letter) {
               return isDigit(letter) || letter == '.';
           });
}

/// Nothing, times a power of ten that is an infinity, is no number.
bool isNothing(const std::string& number)
{
    long digits = 0;
    for (const char letter : number.substr(0, number.find_first_of("eE")))
        if (isDigit(letter) && ++digits <= kCountedDigits && letter != '0') return false;
    return true;
}

} // namespace

/// Any text gives a number or an infinity, and an end within it; decimal fractions are read as the
/// standard library reads them, up to the last digits, or to some more of them where there is an
/// exponent.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    char* end = nullptr;
    const double number = Zelm_locale_independent_strtod(text.c_str(), &end);
    if (end < text.c_str() || end > text.c_str() + text.size()) std::abort();
    if (end == text.c_str() && number != 0.0) std::abort();

    const std::string read(text.c_str(), static_cast<const char*>(end));
    if (std::isnan(number) && !isNothing(read)) std::abort();
    double expected = 0.0;
    const auto whole = std::from_chars(read.data(), read.data() + read.size(), expected);
    if (read.empty() || whole.ptr != read.data() + read.size()) return 0; // another form
    const bool isInReach = std::abs(expected) > 1e-290 && std::abs(expected) < 1e290;
    const bool isCounted = digitsOf(read) <= kCountedDigits;
    if (!isPlain(read) && !(isInReach && isCounted)) return 0;
    const double tolerance = isPlain(read) ? 4e-16 : 1e-12;
    if (std::abs(number - expected) > tolerance * std::abs(expected)) std::abort();
    return 0;
}
