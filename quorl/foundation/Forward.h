#pragma once

#include <quorl/foundation/Export.h>

#include <cstdint>
#include <string>
#include <type_traits>

/// Declarations of the foundation, and the root of the handles of each class that is held while it
/// is only declared.
namespace Tolmen
{

using std::string;

struct Referer;
class SpeakPtr;

template <class T>
class ReferenceBase;
template <class T, class B>
class DynPtr;
template <class T, class B>
class WeakPtrImpl;
template <class T, class B>
class StrongPtr;
template <class T>
class Watched;

class Ageable;
class Attributes;
class TOLMEN_API Cacheable;
class TOLMEN_API ChunkBase;
class Counter;
class Intercube;
class TOLMEN_API InterfaceBase;
class TOLMEN_API InterfaceIterationParameter;
class TOLMEN_API StringList;
class TypeInfo;
class mutex;

template <class T>
class TypedChunkBase;
template <class T>
class TypedChunk;
template <class T>
class Chunk;
template <class T>
class Interface;

/// The class `type` that derives directly from `ReferenceBase<type>`: what all handles to `T` and
/// its relatives share. Read from `T::ReferenceRoot`, for which `T` must be complete; a class that
/// is used in handles before that has a specialisation in a forward header.
template <class T>
struct HandleRoot
{
    using type = typename T::ReferenceRoot;
};

/// Owns: a strong handle keeps its object alive.
template <class T>
using RefPtr = StrongPtr<T, typename HandleRoot<T>::type>;

/// Observes: a weak handle learns of the end of its object.
template <class T>
using WeakPtr = WeakPtrImpl<T, typename HandleRoot<T>::type>;

/// Whether `T` is one of a list of classes, which need not be complete.
template <class T, class... Classes>
concept OneOf = (std::is_same_v<T, Classes> || ...);

/// What a class is told to have as its root: `IsHandleRoot<T>` if it is one itself.
template <class Root>
struct IsHandleRoot
{
    using type = Root;
};

/// Whether objects of a root stand in networks, whose shape is another when one of them dies.
template <class Root>
inline constexpr bool kStandsInNetworks = false;

template <class T>
    requires OneOf<T, Cacheable, ChunkBase, InterfaceBase, InterfaceIterationParameter, StringList>
struct HandleRoot<T> : IsHandleRoot<T>
{
};
template <class T>
struct HandleRoot<TypedChunkBase<T>> : IsHandleRoot<ChunkBase>
{
};
template <class T>
struct HandleRoot<TypedChunk<T>> : IsHandleRoot<ChunkBase>
{
};
template <class T>
struct HandleRoot<Chunk<T>> : IsHandleRoot<ChunkBase>
{
};
template <class T>
struct HandleRoot<Interface<T>> : IsHandleRoot<InterfaceBase>
{
};

} // namespace Tolmen
