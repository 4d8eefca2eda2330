#include "HostNetwork.h"

#include "CacheFile.h"
#include "Failure.h"
#include "HostNotifier.h"
#include "Modules.h"

#include <quorl/foundation/VGlobals.h>
#include <quorl/objects/VObject.h>
#include <quorl/values/ValuePool.h>
#include <zelm/network/NetworkBuilder.h>
#include <zelm/network/NetworkReader.h>
#include <zelm/network/NetworkSaver.h>
#include <zelm/network/NetworkUpdate.h>

#include <algorithm>

namespace Zelm
{
namespace
{

/// A name that begins with a digit could be taken for a remote reference.
std::string asPlainFile(const std::string& file)
{
    const bool beginsWithDigit = !file.empty() && file.front() >= '0' && file.front() <= '9';
    return beginsWithDigit ? "./" + file : file;
}

RefPtr<LoadedNetwork> load(const std::string& file)
{
    Quorl::VLoader::LoadSuccess success;
    const RefPtr<Quorl::VObject> main = Quorl::VLoader::Load(success, asPlainFile(file), "");
    const bool isDeclined = success.reason.starts_with("Unsupported");
    if (!isDeclined && !success.reason.empty()) throw NetworkError(success.reason);
    RefPtr<LoadedNetwork> network = LoadedNetwork::of(main);
    if (!network) throw UsageError(file + ": this is no network file, which ends in .json");
    return network;
}

} // namespace

HostNetwork::HostNetwork(const std::string& file, const Settings& settings, NetworkReading reading)
    : file_(file), notifier_(new HostNotifier)
{
    Modules modules(settings);
    CacheFile(settings).use(modules);
    modules.open();
    modules.complain();
    notifier_->activate();
    loader_ = RefPtr<NetworkLoader>(new NetworkLoader);
    if (reading == NetworkReading::Again) loader_->keepDocument();
    NetworkSaver::enter();
    open();
}

void HostNetwork::open()
{
    network_ = load(file_);
    document_ = loader_->document();
    isAsDocument_ = true;
    if (network_->contexts.empty()) addContext(*network_, "default");
}

bool HostNetwork::reread()
{
    const auto now = std::make_shared<const NetworkDocument>(readNetworkFile(file_));
    if (isAsDocument_)
    {
        isAsDocument_ = false;
        const bool isUpdated = updateNetwork(*network_, *document_, *now);
        isAsDocument_ = true;
        document_ = now;
        if (isUpdated) return false;
    }
    isAsDocument_ = false; // until it is made
    network_->remove();
    open();
    return true;
}

HostNetwork::~HostNetwork()
{
    network_->remove();
    Quorl::VGlobals::theGlobals().quit();
}

std::vector<RequestEntry> HostNetwork::requests() const
{
    if (!network_->frame.requests.empty()) return network_->frame.requests;
    RequestEntry last;
    last.object = network_->objects.back().first;
    return {last};
}

bool HostNetwork::isFor(const RequestEntry& request, const std::string& context)
{
    return request.contexts.empty() ||
           std::ranges::find(request.contexts, context) != request.contexts.end();
}

} // namespace Zelm
