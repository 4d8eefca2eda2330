#pragma once

#include <quorl/foundation/ChunkBase.h>
#include <quorl/foundation/Export.h>

#include <map>
#include <string>

namespace Tolmen
{

/// Named values, each held as a chunk.
class TOLMEN_API Attributes
{
public:
    Attributes();
    ~Attributes();
    Attributes(const Attributes& other);
    Attributes& operator=(const Attributes& other);

    /// \return null if there is none of that name.
    RefPtr<ChunkBase> getAttribute(const std::string& name) const;

    /// Puts the value in the place of an earlier one.
    void setAttribute(const std::string& name, const RefPtr<ChunkBase>& value);

private:
    std::map<std::string, RefPtr<ChunkBase>> values_;
};

} // namespace Tolmen
