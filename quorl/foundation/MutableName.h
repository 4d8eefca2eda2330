#pragma once

#include <quorl/foundation/Export.h>

#include <string>

namespace Tolmen
{

/// A name that may change.
class TOLMEN_API MutableName
{
public:
    MutableName();
    explicit MutableName(const std::string& initialName);
    ~MutableName();

    const std::string& getName() const { return name; }
    void setName(const std::string& newName) { name = newName; }

    /// The leading part of a compound name, up to the first `separator`; all of it without one.
    static std::string BaseName(const std::string& compound, char separator);

    std::string name;
};

} // namespace Tolmen
