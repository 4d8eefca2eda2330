#include <quorl/modules/ModuleFiles.h>

namespace Quorl
{

ModuleFiles::Known& ModuleFiles::of(std::string_view path)
{
    if (!last_ || path != *last_)
    {
        const auto [entry, isNew] = files_.try_emplace(std::string(path));
        if (isNew) entry->second.status = Tolmen::Platform::fileStatus(entry->first);
        last_ = &entry->first;
        known_ = &entry->second;
    }
    return *known_;
}

std::int32_t shortSize(const Tolmen::Platform::FileStatus& status)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(status.size));
}

} // namespace Quorl
