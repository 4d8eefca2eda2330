#include <quorl/foundation/Ageable.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VValueParameter.h>
#include <quorl/values/LocaleIndependentStrtod.h>
#include <quorl/values/VValue.h>
#include <quorl/values/ValuePool.h>

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iomanip>
#include <limits>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

/// Texts of values, and values of parameters. What is to be computed is
/// told by its address: told by value, some compilers let the benchmark library change a number.

namespace QuorlBenchmark
{
namespace
{

using Quorl::RefPtr;

constexpr double kDatum = -106.54422922529595; // 17 digits, as a file has them
constexpr const char* kText = "-106.54422922529595";
constexpr double kTolerance = 1e-13; // a reading may be off by the last digit
constexpr std::size_t kParametersOfPool = 1000;

using Buffer = std::array<char, 64>;

/// Reads the text again and again with `read`, which gives the number.
template <class Read>
void readText(benchmark::State& state, Read read)
{
    std::string text = kText;
    double number = 0;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(&text);
        number = read(text);
        benchmark::DoNotOptimize(&number);
    }
    if (std::abs(number - kDatum) > kTolerance) state.SkipWithError("misread");
}

void BM_ReadText(benchmark::State& state)
{
    readText(state, [](const std::string& text) {
        return Zelm_locale_independent_strtod(text.c_str(), nullptr);
    });
}

void BM_ReadTextStrtod(benchmark::State& state)
{
    readText(state, [](const std::string& text) { return std::strtod(text.c_str(), nullptr); });
}

void BM_ReadTextFromStream(benchmark::State& state)
{
    readText(state, [](const std::string& text) {
        double number = 0;
        std::istringstream(text) >> number;
        return number;
    });
}

void BM_ReadTextFromChars(benchmark::State& state)
{
    readText(state, [](const std::string& text) {
        double number = 0;
        std::from_chars(text.data(), text.data() + text.size(), number);
        return number;
    });
}

/// Writes the datum again and again with `write`, which gives an object that holds the text.
template <class Write>
void writeText(benchmark::State& state, Write write)
{
    double datum = kDatum;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(&datum);
        auto written = write(datum);
        benchmark::DoNotOptimize(&written);
    }
    if (std::string(write(datum).data()) != kText) state.SkipWithError("miswritten");
}

void BM_WriteText(benchmark::State& state)
{
    writeText(state, [](double datum) { return Quorl::VValueTrait<double>::Text(datum); });
}

void BM_WriteTextSnprintf(benchmark::State& state)
{
    writeText(state, [](double datum) {
        Buffer text;
        std::snprintf(text.data(), text.size(), "%.17g", datum);
        return text;
    });
}

void BM_WriteTextToStream(benchmark::State& state)
{
    writeText(state, [](double datum) {
        std::ostringstream text;
        text << std::setprecision(std::numeric_limits<double>::max_digits10) << datum;
        return text.str();
    });
}

/// \param format further arguments of `std::to_chars`; without any, it writes as few digits as
/// bring the number back.
template <auto... format>
void BM_WriteTextToChars(benchmark::State& state)
{
    writeText(state, [](double datum) {
        Buffer text;
        *std::to_chars(text.data(), text.data() + text.size() - 1, datum, format...).ptr = '\0';
        return text;
    });
}

/// A value from its text and back.
void BM_ValueThroughText(benchmark::State& state)
{
    const RefPtr<Quorl::VValueBase> value(new Quorl::VValue<double>(0.0));
    std::string text = kText;
    for (auto _ : state)
    {
        value->setValueFromText(text);
        text = value->Text();
        benchmark::DoNotOptimize(&text);
    }
    if (std::abs(std::strtod(text.c_str(), nullptr) - kDatum) > kTolerance)
        state.SkipWithError("the value changed on its way");
}

void BM_NumberThroughTextStandard(benchmark::State& state)
{
    Buffer text{};
    std::snprintf(text.data(), text.size(), "%s", kText);
    for (auto _ : state)
    {
        double number = std::strtod(text.data(), nullptr);
        benchmark::DoNotOptimize(&number);
        std::snprintf(text.data(), text.size(), "%.17g", number);
        benchmark::DoNotOptimize(&text);
    }
    if (std::string(text.data()) != kText) state.SkipWithError("the number changed on its way");
}

/// Picks parameters in no order that a processor could learn; the same ones in each run.
class RandomNumber
{
public:
    std::size_t next()
    {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return (state_ >> 33U) % kParametersOfPool;
    }

private:
    std::uint64_t state_ = 0;
};

/// Parameters that all have a variable in one pool, if they are local.
class Parameters
{
public:
    explicit Parameters(bool isLocal) : pool(new Quorl::ValuePool)
    {
        for (std::size_t left = kParametersOfPool; left > 0; --left)
        {
            const RefPtr<Quorl::VValue<double>> value(new Quorl::VValue<double>(kDatum));
            all.push_back(
                RefPtr<Quorl::VParameter>(new Quorl::VValueParameter<double>(value, "datum")));
            if (!isLocal) continue;
            all.back()->Localize();
            all.back()->getValue(pool, "");
        }
    }

    const Quorl::VParameter& next() { return *all[number_.next()]; }

    RefPtr<Quorl::ValuePool> pool;
    std::vector<RefPtr<Quorl::VParameter>> all;

private:
    RandomNumber number_;
};

template <bool isLocal>
void BM_GetValue(benchmark::State& state)
{
    Parameters parameters(isLocal);
    const Quorl::VParameter& parameter = parameters.next();
    const bool isShared = parameter.getValue(parameters.pool, "") == parameter.defaultValue;
    if (isShared == isLocal) return state.SkipWithError("not the value that was meant");
    for (auto _ : state)
    {
        RefPtr<Quorl::VValueBase> value = parameters.next().getValue(parameters.pool, "");
        benchmark::DoNotOptimize(&value);
    }
}

/// Reads the datum itself, which takes a cast to the type of the value.
template <bool isLocal>
void BM_GetDatum(benchmark::State& state)
{
    Parameters parameters(isLocal);
    double datum = 0;
    for (auto _ : state)
    {
        const RefPtr<Quorl::VTypedValueBase<double>> value =
            parameters.next().getValue(parameters.pool, "");
        value->getValue(datum);
        benchmark::DoNotOptimize(&datum);
    }
    if (datum != kDatum) state.SkipWithError("not the datum that was meant");
}

void BM_CopySharedNumber(benchmark::State& state)
{
    std::vector<std::shared_ptr<double>> numbers;
    for (std::size_t left = kParametersOfPool; left > 0; --left)
        numbers.push_back(std::make_shared<double>(kDatum));
    RandomNumber number;
    double datum = 0;
    for (auto _ : state)
    {
        const std::shared_ptr<double> held = numbers[number.next()];
        datum = *held;
        benchmark::DoNotOptimize(&datum);
    }
    if (datum != kDatum) state.SkipWithError("not the datum that was meant");
}

void BM_FindInMap(benchmark::State& state)
{
    std::vector<std::unique_ptr<char>> keys;
    std::map<const char*, std::shared_ptr<double>> pool;
    for (std::size_t left = kParametersOfPool; left > 0; --left)
    {
        keys.push_back(std::make_unique<char>());
        pool[keys.back().get()] = std::make_shared<double>(kDatum);
    }
    RandomNumber number;
    double datum = 0;
    for (auto _ : state)
    {
        const std::shared_ptr<double> held = pool.find(keys[number.next()].get())->second;
        datum = *held;
        benchmark::DoNotOptimize(&datum);
    }
    if (datum != kDatum) state.SkipWithError("not the datum that was meant");
}

template <bool isLocal>
void BM_SetParameterFromText(benchmark::State& state)
{
    Parameters parameters(isLocal);
    const std::string text = kText;
    const auto before = Tolmen::Ageable::GlobalTime.stamp();
    for (auto _ : state)
        parameters.next().setValueFromText(text, parameters.pool, "", true, {}, nullptr, nullptr);
    if (Tolmen::Ageable::GlobalTime.stamp() - before != state.iterations())
        state.SkipWithError("not each setting moved the clock");
}

BENCHMARK(BM_ReadText)->Name("text to double/ours");
BENCHMARK(BM_ReadTextStrtod)->Name("text to double/strtod");
BENCHMARK(BM_ReadTextFromStream)->Name("text to double/std::istringstream");
BENCHMARK(BM_ReadTextFromChars)->Name("text to double/bare, from_chars");
BENCHMARK(BM_WriteText)->Name("double to text/ours");
BENCHMARK(BM_WriteTextSnprintf)->Name("double to text/snprintf");
BENCHMARK(BM_WriteTextToStream)->Name("double to text/std::ostringstream");
BENCHMARK(BM_WriteTextToChars<>)->Name("double to text/bare, to_chars");
BENCHMARK(
    BM_WriteTextToChars<std::chars_format::general, std::numeric_limits<double>::max_digits10>)
    ->Name("double to text/bare, to_chars of 17 digits");
BENCHMARK(BM_ValueThroughText)->Name("value from text and back/ours");
BENCHMARK(BM_NumberThroughTextStandard)->Name("value from text and back/strtod and snprintf");
BENCHMARK(BM_GetValue<false>)->Name("parameter get value, global/ours");
BENCHMARK(BM_CopySharedNumber)->Name("parameter get value, global/std::shared_ptr");
BENCHMARK(BM_GetValue<true>)->Name("parameter get value, local/ours");
BENCHMARK(BM_FindInMap)->Name("parameter get value, local/std::map");
BENCHMARK(BM_GetDatum<false>)->Name("parameter get datum, global/ours");
BENCHMARK(BM_CopySharedNumber)->Name("parameter get datum, global/std::shared_ptr");
BENCHMARK(BM_GetDatum<true>)->Name("parameter get datum, local/ours");
BENCHMARK(BM_FindInMap)->Name("parameter get datum, local/std::map");
BENCHMARK(BM_SetParameterFromText<false>)->Name("parameter set from text, global/ours");
BENCHMARK(BM_ReadTextStrtod)->Name("parameter set from text, global/strtod");
BENCHMARK(BM_SetParameterFromText<true>)->Name("parameter set from text, local/ours");
BENCHMARK(BM_ReadTextStrtod)->Name("parameter set from text, local/strtod");

} // namespace
} // namespace QuorlBenchmark
