#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// Makes remote files available to loaders. At most one is installed.
class QUORL_API DownloadHandler : public Tolmen::ReferenceBase<DownloadHandler>
{
public:
    ~DownloadHandler() override = 0;

    /// Fetches a file, or waits for one that is on its way.
    /// \param size in bytes, that the file must have.
    /// \param file its local name.
    /// \param localsize in bytes, of the file as it stands; 0 if it could not be opened.
    /// \return whether to go on with the file as it is then; otherwise it is looked at again, and
    /// if its size is still another, this is called again.
    virtual bool download(const string& url, long long size, const string& file,
                          long long localsize) = 0;

    /// Owned until it is replaced, or the process cleans up; null removes it.
    static void setDownloadHandler(const RefPtr<DownloadHandler>& handler);
    static RefPtr<DownloadHandler> getDownloadHandler();
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::DownloadHandler>;
} // namespace Tolmen
