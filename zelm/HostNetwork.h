#pragma once

#include "Settings.h"

#include <quorl/services/VActionNotifier.h>
#include <zelm/network/LoadedNetwork.h>
#include <zelm/network/NetworkLoader.h>

#include <memory>
#include <string>
#include <vector>

namespace Zelm
{

/// Whether a file will be read again, to follow its changes.
enum class NetworkReading
{
    Once,
    Again,
};

/// A network file, opened by this program: its modules, its objects, and whoever listens to them.
/// Has contexts, one called "default" if the file tells none. One at a time in a process.
class HostNetwork
{
public:
    /// \throws UsageError if this is no network file, NetworkError for what is wrong with it.
    HostNetwork(const std::string& file, const Settings& settings,
                NetworkReading reading = NetworkReading::Once);
    HostNetwork(const HostNetwork&) = delete;
    HostNetwork& operator=(const HostNetwork&) = delete;
    ~HostNetwork();

    LoadedNetwork& operator*() const { return *network_; }
    const RefPtr<LoadedNetwork>& handle() const { return network_; }

    /// Reads the file again. What has changed in values is set in place; where more has changed,
    /// the network is made anew.
    /// \pre it was opened to be read again.
    /// \return whether it was made anew.
    /// \throws NetworkError for what is wrong now; the network then stays, and is made anew the
    /// next time.
    bool reread();

    /// What the file requests, or its last object.
    std::vector<RequestEntry> requests() const;

    /// Whether a request is meant for a context.
    static bool isFor(const RequestEntry& request, const std::string& context);

private:
    void open();

    const std::string file_;
    std::shared_ptr<const NetworkDocument> document_; // as it was read last, if it is followed
    bool isAsDocument_ = true;                        // no update has failed half-way
    RefPtr<Quorl::VActionNotifier> notifier_;
    RefPtr<NetworkLoader> loader_;
    RefPtr<LoadedNetwork> network_;
};

} // namespace Zelm
