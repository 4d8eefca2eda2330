#include <zelm/network/NetworkReader.h>
#include <zelm/network/NetworkWriter.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// Any text is read or refused with one line, and what is read is written in one form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    try
    {
        const std::string once = Zelm::writtenNetwork(Zelm::readNetwork("a.json", text));
        if (Zelm::writtenNetwork(Zelm::readNetwork("a.json", once)) != once) std::abort();
    }
    catch (const Zelm::NetworkError& error)
    {
        if (std::string(error.what()).find('\n') != std::string::npos) std::abort();
    }
    return 0;
}
