#pragma once

#include <quorl/platform/FileStatus.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Quorl
{

/// What the cache of creators looks at in module files: at each once, however many creators its
/// module has.
class ModuleFiles
{
public:
    struct Known
    {
        Tolmen::Platform::FileStatus status;
        std::optional<bool> isNotLoaded; // once it was made known to the table of modules
    };

    Known& of(std::string_view path); ///< stays where it is

private:
    std::unordered_map<std::string, Known> files_;
    const std::string* last_ = nullptr; // neighbours are often of one module
    Known* known_ = nullptr;
};

/// The low 32 bits, so that a large file compares as it was written.
std::int32_t shortSize(const Tolmen::Platform::FileStatus& status);

} // namespace Quorl
