#pragma once

#include <quorl/foundation/Export.h>

#include <cstddef>
#include <map>
#include <string>

namespace Tolmen::Platform
{

/// A module file as data: the numbered texts that it carries, read without running any of its code.
///
/// The file may hold anything: what it says of itself is checked against its size, and memory is
/// only taken for what is there, and for no more than the texts that a module may have.
class TOLMEN_API ModuleImage
{
public:
    static constexpr unsigned kMostNumber = 15; ///< of a text; higher ones are no module's

    explicit ModuleImage(const std::string& path);

    /// The system's words for why the file cannot be opened, or is no library of this machine;
    /// empty if it is one.
    const std::string& error() const { return error_; }

    /// Whether it carries texts of a module at all; they may be empty.
    bool hasTexts() const { return !texts_.empty(); }

    /// At most `most` characters of a text; empty if there is none.
    std::string text(unsigned number, std::size_t most) const;

private:
    std::string error_;
    std::map<unsigned, std::string> texts_;
};

} // namespace Tolmen::Platform
