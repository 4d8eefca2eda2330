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

/// The same digits without a sign, if there are few enough for all of them to count, and the power
/// of ten is within those that are multiplied up without loss of range.
bool isPlain(const std::string& number)
{
    constexpr std::size_t kCountedDigits = 18;
    return number.size() <= kCountedDigits && std::ranges::all_of(number, [](char letter) {
               return isDigit(letter) || letter == '.';
           });
}

/// Nothing, times a power of ten that is an infinity, is no number.
bool isNothing(const std::string& number)
{
    constexpr long kCountedDigits = 18;
    long digits = 0;
    for (const char letter : number.substr(0, number.find_first_of("eE")))
        if (isDigit(letter) && ++digits <= kCountedDigits && letter != '0') return false;
    return true;
}

} // namespace

/// Any text gives a number or an infinity, and an end within it; short decimal fractions are read
/// as the standard library reads them, up to the last digits.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    char* end = nullptr;
    const double number = Zelm_locale_independent_strtod(text.c_str(), &end);
    if (end < text.c_str() || end > text.c_str() + text.size()) std::abort();
    if (end == text.c_str() && number != 0.0) std::abort();

    const std::string read(text.c_str(), static_cast<const char*>(end));
    if (std::isnan(number) && !isNothing(read)) std::abort();
    if (read.empty() || !isPlain(read)) return 0;
    double expected = 0.0;
    std::from_chars(read.data(), read.data() + read.size(), expected);
    if (std::abs(number - expected) > 4e-16 * expected) std::abort();
    return 0;
}
