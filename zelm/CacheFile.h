#pragma once

#include "Modules.h"

#include <zelm/network/Json.h>

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
        Foreign, ///< what is there is no cache of this program
        Torn,    ///< it is not what was written
        Stale,   ///< a module that it tells of has changed, or is gone
        Other,   ///< it tells of other folders
        Good,
    };

    explicit CacheFile(const Settings& settings);

    const std::string& path() const { return path_; }

    Verdict check(const Modules& modules) const;

    /// Uses it, if it is good; what is torn or stale is dropped, with a word to the user. Nothing
    /// here touches what is foreign.
    void use(const Modules& modules) const;

    /// Writes what the registry has. \pre all modules are open, nothing else is in the registry.
    /// \throws NetworkError if it cannot be written, or something foreign is there.
    void write(const Modules& modules) const;

    /// \return whether there was something.
    /// \throws NetworkError if that is foreign.
    bool drop() const;

    static std::string words(Verdict verdict);

private:
    std::string sumPath() const { return path_ + ".sum"; }
    bool isForeign(const Json& sum) const; // what stands beside it; null for none of ours
    void refuseForeign() const;

    std::string path_;
};

} // namespace Zelm
