#include "NetworkLoader.h"

#include "LoadedNetwork.h"
#include "NetworkBuilder.h"
#include "NetworkReader.h"

#include <quorl/objects/VObject.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>

#include <memory>
#include <utility>

namespace Zelm
{
namespace
{

using Quorl::VCreatorBase;
using Quorl::VObject;

/// Makes one network, again and again.
class NetworkCreator final : public VCreatorBase
{
public:
    explicit NetworkCreator(std::shared_ptr<const NetworkDocument> document)
        : VCreatorBase("Networks/" + document->file, 0, {}, false, nullptr),
          document_(std::move(document))
    {
    }

    /// The objects have the names of the file.
    RefPtr<VObject> create(const std::string& /*wantedName*/,
                           const Tolmen::Intercube& info) override
    {
        return buildNetwork(*document_, info)->object(mainObjectOf(*document_));
    }

    Quorl::VAcceptInfoList accept(const RefPtr<VObject>& /*parent*/) override { return {}; }

private:
    const std::shared_ptr<const NetworkDocument> document_;
};

} // namespace

NetworkLoader::NetworkLoader() : VLoader("network files", 0) {}

Quorl::VLoader::LoadSuccess NetworkLoader::check(const std::string& file)
{
    if (file.ends_with(".json")) return {};
    return {getName(), file, "it does not end in .json"};
}

RefPtr<Quorl::VManagedObject> NetworkLoader::load(LoadSuccess& success, const std::string& file,
                                                  const std::string& /*name*/)
{
    try
    {
        const auto document = std::make_shared<const NetworkDocument>(readNetworkFile(file));
        if (document->objects.empty()) throw NetworkError(file + ": there are no objects in it");
        if (keepsDocument_) document_ = document;
        return RefPtr<VCreatorBase>(new NetworkCreator(document));
    }
    catch (const NetworkError& error)
    {
        success.reason = error.what();
        return {};
    }
}

} // namespace Zelm
