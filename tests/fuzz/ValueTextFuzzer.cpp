#include <quorl/kit/ValueTraits.h>
#include <quorl/values/VGraph.h>
#include <quorl/values/VValue.h>
#include <quorl/values/VValueTrait.h>
#include <tests/fuzz/TextForm.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace
{

using QuorlTest::readAndWrite;

/// What is written of a fraction reads as that, but for the last digits that the type has, which
/// the parser's steps may cost, or for the digits that are not written.
template <class T>
void readAndWriteFraction(const std::string& text, double relative, double absolute)
{
    using Trait = Quorl::VValueTrait<T>;
    T datum{};
    T again{};
    Trait::setValueFromText(datum, text);
    Trait::setValueFromText(again, Trait::Text(datum));
    if (!std::isfinite(datum)) return; // a word, which reads as 0
    const double difference = std::abs(static_cast<double>(again) - static_cast<double>(datum));
    if (difference > relative * std::abs(static_cast<double>(datum)) + absolute) std::abort();
}

void readAndWriteUnsigned(const std::string& text)
{
    try
    {
        readAndWrite<unsigned>(text);
    }
    catch (const std::logic_error& error)
    {
        if (std::string(error.what()) != "stoul") std::abort();
    }
}

void createByTypeName(const std::string& text)
{
    for (const char* const type : {"double", "int", "no type"})
    {
        bool isTaken = false;
        const auto value = Quorl::VValueCreator::create(type, text, isTaken);
        if (isTaken && !value) std::abort();
    }
}

} // namespace

/// Any text is read by each type's trait or refused, and what is written is stable.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    readAndWrite<char>(text);
    readAndWrite<short>(text);
    readAndWrite<int>(text);
    readAndWriteUnsigned(text);
    readAndWrite<long long>(text);
    readAndWrite<long>(text);
    readAndWrite<bool>(text);
    readAndWriteFraction<float>(text, 1e-6, 1e-5);
    readAndWriteFraction<double>(text, 1e-12, 1e-290);
    readAndWrite<std::string>(text);
    createByTypeName(text);
    return 0;
}
