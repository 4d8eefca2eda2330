#include <plugins/grid/GridValues.h>
#include <plugins/picture/PictureValues.h>
#include <plugins/volume/VolumeValues.h>
#include <tests/fuzz/TextForm.h>

#include <cstddef>
#include <cstdint>
#include <string>

using QuorlTest::readAndWrite;

/// Any text is read as a word or a colour, or refused.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    readAndWrite<Maps::Operation>(text);
    readAndWrite<Volumes::Axis>(text);
    readAndWrite<Maps::Rgb>(text);
    return 0;
}
