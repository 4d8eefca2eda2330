#include <quorl/foundation/Chunk.h>

namespace Tolmen
{

constinit std::int64_t ChunkBase::TotalMemsize = 0;

template class ReferenceBase<ChunkBase>;
template class Chunk<double>;
template class Chunk<bool>;

ChunkBase::ChunkBase() = default;
ChunkBase::~ChunkBase() = default;

} // namespace Tolmen
