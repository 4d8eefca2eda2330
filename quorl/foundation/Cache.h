#pragma once

#include <quorl/foundation/Cacheable.h>
#include <quorl/foundation/Exception.h>

namespace Tolmen
{

/// The cache of large data, as far as its users need to know: how it reports that it is full.
class TOLMEN_API Cache
{
public:
    /// An object could not be held.
    class OutOfMemory;
};

class TOLMEN_API Cache::OutOfMemory : public Exception
{
public:
    explicit OutOfMemory(const RefPtr<Cacheable>& object = RefPtr<Cacheable>(),
                         const std::string& text = std::string());
    OutOfMemory(const OutOfMemory& other);
    OutOfMemory& operator=(const OutOfMemory& other);
    ~OutOfMemory() override;

    RefPtr<Cacheable> object; ///< what could not be held; may be null
};

} // namespace Tolmen
