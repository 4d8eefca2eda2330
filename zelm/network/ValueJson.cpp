#include "ValueJson.h"

#include "NetworkError.h"
#include "TypeName.h"

#include <quorl/values/VTypedValueBase.h>
#include <quorl/values/VValueCreator.h>

#include <array>
#include <charconv>
#include <cmath>
#include <concepts>
#include <exception>
#include <limits>

namespace Zelm
{
namespace
{

using Quorl::VTypedValueBase;
using Quorl::VValueBase;

[[noreturn]] void refuse(const std::string& what, const Json& json)
{
    throw NetworkError(what + " is expected here, not " +
                       json.dump(-1, ' ', false, Json::error_handler_t::replace));
}

template <std::integral T>
std::string rangeOf()
{
    return "a whole number from " + std::to_string(std::numeric_limits<T>::min()) + " to " +
           std::to_string(std::numeric_limits<T>::max());
}

/// Whether a floating number is a whole one that a `T` can be.
template <std::integral T>
bool holds(double number)
{
    constexpr double kBehindMax = 2.0 * static_cast<double>(std::numeric_limits<T>::max() / 2 + 1);
    return number == std::trunc(number) && number < kBehindMax &&
           number >= static_cast<double>(std::numeric_limits<T>::min());
}

template <std::integral T>
T numberFrom(const Json& json)
{
    if (json.is_number_unsigned() && std::in_range<T>(json.get<std::uint64_t>()))
        return json.get<T>();
    if (json.is_number_integer() && !json.is_number_unsigned() &&
        std::in_range<T>(json.get<std::int64_t>()))
        return json.get<T>();
    if (json.is_number_float() && holds<T>(json.get<double>())) return json.get<T>();
    refuse(rangeOf<T>(), json);
}

template <std::floating_point T>
T numberFrom(const Json& json)
{
    if (json.is_string()) // the library's own comparison ends the process if there is no memory
    {
        const auto& word = json.get_ref<const std::string&>();
        if (word == "inf") return std::numeric_limits<T>::infinity();
        if (word == "-inf") return -std::numeric_limits<T>::infinity();
        if (word == "nan") return std::numeric_limits<T>::quiet_NaN();
    }
    const bool fits = json.is_number() && std::isfinite(static_cast<T>(json.get<double>()));
    if (!fits) refuse("a number", json);
    return static_cast<T>(json.get<double>());
}

template <std::integral T>
Json jsonOfNumber(T number)
{
    return number;
}

/// The number with the fewest digits that gives a single-precision one back.
double shortest(float number)
{
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    double nearest = 0.0;
    std::from_chars(digits.data(), end, nearest);
    return static_cast<float>(nearest) == number ? nearest : static_cast<double>(number);
}

double shortest(double number)
{
    return number;
}

template <std::floating_point T>
Json jsonOfNumber(T number)
{
    if (std::isnan(number)) return "nan";
    if (std::isinf(number)) return number > 0 ? "inf" : "-inf";
    return shortest(number);
}

/// What can be done with a value whose type has a form of its own in JSON.
template <class Act, class... Types>
bool withFirst(VValueBase& value, Act&& act)
{
    const Quorl::WeakPtr<VValueBase> any(&value); // it may stand on the stack
    const auto isOf = [&]<class T>(const T*) {
        const Quorl::WeakPtr<VTypedValueBase<T>> typed = any;
        if (!typed) return false;
        act(*typed);
        return true;
    };
    return (isOf(static_cast<const Types*>(nullptr)) || ...);
}

template <class Act>
bool withNumber(VValueBase& value, Act&& act)
{
    return withFirst<Act, short, int, unsigned int, long, long long, float, double>(
        value, std::forward<Act>(act));
}

template <class Act>
bool withTruth(VValueBase& value, Act&& act)
{
    return withFirst<Act, bool>(value, std::forward<Act>(act));
}

template <class Act>
bool withText(VValueBase& value, Act&& act)
{
    return withFirst<Act, std::string>(value, std::forward<Act>(act));
}

template <class T>
T datumOf(VTypedValueBase<T>& value)
{
    T datum{};
    value.getValue(datum);
    return datum;
}

void needUtf8(const std::string& text)
{
    try
    {
        static_cast<void>(Json(text).dump());
    }
    catch (const Json::type_error&)
    {
        throw NetworkError("the text " + inQuotes(text) +
                           " is not UTF-8, and cannot be written as JSON");
    }
}

/// Whether the type's text form tells this datum.
bool isTold(const VValueBase& value, const std::string& text)
{
    const RefPtr<VValueBase> copy = value.copy();
    return copy && copy->setValueFromText(text) && copy->Text() == text;
}

/// The text form of any other type. Its readers may throw.
void setFromTextForm(VValueBase& value, const std::string& text)
{
    const auto refused = [&](const std::string& why) {
        throw NetworkError(inQuotes(text) + " is no " + typeNameOf(value.getType()) + why);
    };
    try
    {
        if (value.setValueFromText(text)) return;
    }
    catch (const std::exception& error)
    {
        refused(std::string(": ") + error.what());
    }
    refused("");
}

} // namespace

std::optional<Json> jsonOf(const VValueBase& constant)
{
    // No operation that is used here changes it; handles know no constant values.
    auto& value = const_cast<VValueBase&>(constant); // NOLINT
    Json json;
    if (withNumber(value, [&](auto& number) { json = jsonOfNumber(datumOf(number)); }) ||
        withTruth(value, [&](auto& truth) { json = datumOf(truth); }))
        return json;
    const bool isText = withText(value, [&](auto& text) { json = datumOf(text); });
    const std::string text = isText ? json.get<std::string>() : value.Text();
    if (!isText && !isTold(value, text)) return std::nullopt;
    needUtf8(text);
    if (isText) return json;
    return Json{{"type", typeNameOf(value.getType())}, {"text", text}};
}

void setFromJson(VValueBase& value, const Json& json)
{
    const auto setNumber = [&]<class T>(VTypedValueBase<T>& number) {
        number.setValue(numberFrom<T>(json));
    };
    const auto setTruth = [&](VTypedValueBase<bool>& truth) {
        if (!json.is_boolean()) refuse("true or false", json);
        truth.setValue(json.get<bool>());
    };
    const auto setText = [&](VTypedValueBase<std::string>& text) {
        if (!json.is_string()) refuse("a text", json);
        text.setValue(json.get<std::string>());
    };
    if (withNumber(value, setNumber) || withTruth(value, setTruth) || withText(value, setText))
        return;

    const std::string type = typeNameOf(value.getType());
    if (json.is_string()) return setFromTextForm(value, json.get<std::string>());
    if (!json.is_object()) refuse("the text of a " + type, json);
    if (kernelTypeName(json.at("type").get<std::string>()) != kernelTypeName(type))
        throw NetworkError("a " + type + " is expected here, not a " +
                           json.at("type").get<std::string>());
    setFromTextForm(value, json.at("text").get<std::string>());
}

void setFromText(VValueBase& value, const std::string& text)
{
    const auto asWords = [](const auto&) {};
    if (withNumber(value, asWords) || withTruth(value, asWords))
    {
        const Json json = Json::parse(text, nullptr, false);
        return setFromJson(value, json.is_discarded() ? Json(text) : json);
    }
    setFromJson(value, text);
}

RefPtr<VValueBase> valueFromJson(const std::string& type, const Json& json)
{
    const std::string kernelName = kernelTypeName(type);
    bool isTaken = false;
    RefPtr<VValueBase> value;
    try
    {
        value = Quorl::VValueCreator::create(kernelName, "", isTaken);
    }
    catch (const std::exception&) // a type may refuse the empty text so
    {
        value = Quorl::VValueCreator::create(kernelName, "0", isTaken);
    }
    if (!value) throw NetworkError("there is no type " + inQuotes(type));
    setFromJson(*value, json);
    return value;
}

} // namespace Zelm
