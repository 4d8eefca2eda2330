#pragma once

#include "Modules.h"

#include <string>

namespace Zelm
{

/// What an earlier start has found in the modules, so that a start loads those alone that it needs:
/// the kernel's cache, and a small file beside it that tells whether it is whole, and of which
/// module files.
class CacheFile
{
public:
    enum class Verdict
    {
        Absent,
        Torn,  ///< it is not what was written
        Stale, ///< a module that it tells of has changed, or is gone
        Other, ///< it tells of other folders
        Good,
    };

    explicit CacheFile(const Settings& settings);

    const std::string& path() const { return path_; }

    Verdict check(const Modules& modules) const;

    /// Uses it, if it is good; what is torn or stale is dropped, with a word to the user.
    void use(const Modules& modules) const;

    /// Writes what the registry has. \pre all modules are open, nothing else is in the registry.
    /// \throws NetworkError if it cannot be written.
    void write(const Modules& modules) const;

    bool drop() const; ///< \return whether there was something

    static std::string words(Verdict verdict);

private:
    std::string sumPath() const { return path_ + ".sum"; }

    std::string path_;
};

} // namespace Zelm
