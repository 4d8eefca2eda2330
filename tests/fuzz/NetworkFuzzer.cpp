#include <zelm/network/LoadedNetwork.h>
#include <zelm/network/NetworkBuilder.h>
#include <zelm/network/NetworkDescription.h>
#include <zelm/network/NetworkReader.h>
#include <zelm/network/NetworkWriter.h>
#include <zelm/network/tests/TestObjects.h>

#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{

using Zelm::NetworkDocument;

NetworkDocument read(const std::string& text)
{
    return Zelm::readNetwork("a.json", text);
}

/// The text of a network that is made, described and taken away again.
std::string rebuilt(const NetworkDocument& document)
{
    const auto network = Zelm::buildNetwork(document, Tolmen::Intercube());
    const std::string text = Zelm::writtenNetwork(Zelm::describeNetwork());
    network->remove();
    return text;
}

/// What is built, and described, is built from its description.
void build(const NetworkDocument& document)
{
    if (document.objects.empty()) return;
    const std::string once = rebuilt(document);
    if (rebuilt(read(once)) != once) std::abort();
}

} // namespace

/// Any text is read or refused with one line, and what is read is written in one form. If it can be
/// built, it is described in one form as well; nothing is left of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    try
    {
        const NetworkDocument document = read(text);
        const std::string once = Zelm::writtenNetwork(document);
        if (Zelm::writtenNetwork(read(once)) != once) std::abort();
        build(document);
    }
    catch (const Zelm::NetworkError& error)
    {
        if (std::string(error.what()).find('\n') != std::string::npos) std::abort();
    }
    if (!Quorl::VCreators(typeid(Quorl::VObject))->empty()) std::abort();
    return 0;
}
