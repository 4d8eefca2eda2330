#include <plugins/grid/GridValues.h>
#include <plugins/picture/PictureValues.h>
#include <plugins/volume/VolumeValues.h>

#include <quorl/values/VValueTrait.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{

/// What is taken is written in a form that is taken for the same.
template <class T>
void readAndWrite(const std::string& text)
{
    using Trait = Quorl::VValueTrait<T>;
    T datum{};
    if (!Trait::setValueFromText(datum, text)) return;
    T again{};
    if (!Trait::setValueFromText(again, Trait::Text(datum)) || !(again == datum)) std::abort();
}

} // namespace

/// Any text is read as a word or a colour, or refused.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    readAndWrite<Maps::Operation>(text);
    readAndWrite<Volumes::Axis>(text);
    readAndWrite<Maps::Rgb>(text);
    return 0;
}
