#include <quorl/modules/DownloadHandler.h>

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
    static RefPtr<DownloadHandler> handler;
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
