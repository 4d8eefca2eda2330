#include <quorl/modules/DownloadHandler.h>

#include <quorl/foundation/AtCleanUp.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::DownloadHandler>;
} // namespace Tolmen

namespace Quorl
{
namespace
{

RefPtr<DownloadHandler>& theDownloadHandler()
{
    static auto& handler = *new RefPtr<DownloadHandler>;
    static const Tolmen::AtCleanUp end([] { handler = RefPtr<DownloadHandler>(); });
    return handler;
}

} // namespace

DownloadHandler::~DownloadHandler() = default;

void DownloadHandler::setDownloadHandler(const RefPtr<DownloadHandler>& handler)
{
    theDownloadHandler() = handler;
}

RefPtr<DownloadHandler> DownloadHandler::getDownloadHandler()
{
    return theDownloadHandler();
}

} // namespace Quorl
