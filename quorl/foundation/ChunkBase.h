#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/RefPtr.h>

#include <cstdint>
#include <typeinfo>

namespace Tolmen
{

/// An array of elements whose type is only known at run time. See `Chunk`.
class TOLMEN_API ChunkBase : public ReferenceBase<ChunkBase>
{
public:
    ChunkBase();
    ~ChunkBase() override;

    virtual const std::type_info& getType() const = 0; ///< of an element
    virtual unsigned long long elements() const = 0;
    virtual unsigned long long element_size() const = 0; ///< in bytes

    /// The first element; null for `bool`, whose elements are packed, and for an empty chunk.
    virtual void* data_ptr() = 0;
    virtual const void* const_data_ptr() const = 0;

    /// A new chunk of `n` elements of this type, each value-initialised; the flag is for modules.
    virtual RefPtr<ChunkBase> newChunk(unsigned long long n, bool flag) const = 0;

    static std::int64_t TotalMemsize; ///< bytes held by all chunks, as of their construction
};

extern template class ReferenceBase<ChunkBase>;

} // namespace Tolmen
