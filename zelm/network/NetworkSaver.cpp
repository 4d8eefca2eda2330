#include "NetworkSaver.h"

#include "NetworkDescription.h"
#include "NetworkWriter.h"

#include <quorl/modules/VSaveable.h>
#include <quorl/services/VActionNotifier.h>

namespace Zelm
{

NetworkSaver::NetworkSaver() : ZelmSaver(".json") {}

bool NetworkSaver::save(const std::string& file)
{
    try
    {
        writeNetworkFile(describeNetwork(), file);
        return true;
    }
    catch (const NetworkError& error)
    {
        Quorl::VActionNotifier::Warning({"network", "Cannot save file " + file, error.what(), 0});
        return false;
    }
}

void NetworkSaver::enter()
{
    Quorl::VSaveable::GlobalState().addSaver("network", new NetworkSaver);
}

} // namespace Zelm
