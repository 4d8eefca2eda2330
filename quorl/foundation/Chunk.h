#pragma once

#include <quorl/foundation/ChunkBase.h>

#include <type_traits>
#include <vector>

namespace Tolmen
{

/// A chunk whose element type is known, whatever holds the elements.
template <class T>
class TOLMEN_TEMPLATE_API TypedChunkBase : public ChunkBase
{
public:
    const std::type_info& getType() const override { return typeid(T); }
    unsigned long long element_size() const override { return sizeof(T); }

    const std::type_info& getBaseType() const { return typeid(T); }
    virtual RefPtr<TypedChunkBase<T>> createNewChunk(unsigned long long n, bool flag) const = 0;
};

/// A chunk that holds its elements in memory.
template <class T>
class TOLMEN_TEMPLATE_API TypedChunk : public TypedChunkBase<T>
{
public:
    virtual std::vector<T>& base_vector() = 0;
    virtual const std::vector<T>& base_vector() const = 0;
};

/// An array of `T` that can be held by handles. Its bytes count in `ChunkBase::TotalMemsize` from
/// construction to destruction, by the number of elements at construction: a later resizing of the
/// vector is not seen.
template <class T>
class TOLMEN_TEMPLATE_API Chunk : public TypedChunk<T>, public std::vector<T>
{
public:
    explicit Chunk(unsigned long long n = 0) : std::vector<T>(n) { count(); }
    Chunk(unsigned long long n, const T& value) : std::vector<T>(n, value) { count(); }
    Chunk(const Chunk& other) : TypedChunk<T>(other), std::vector<T>(other) { count(); }
    Chunk& operator=(const Chunk& other)
    {
        base_vector() = other.base_vector();
        return *this;
    }
    ~Chunk() override { ChunkBase::TotalMemsize -= countedBytes_; }

    std::vector<T>& base_vector() override { return *this; }
    const std::vector<T>& base_vector() const override { return *this; }

    unsigned long long elements() const override { return this->size(); }

    void* data_ptr() override
    {
        if constexpr (std::is_same_v<T, bool>)
            return nullptr;
        else
            return this->data();
    }
    const void* const_data_ptr() const override { return const_cast<Chunk&>(*this).data_ptr(); }

    RefPtr<ChunkBase> newChunk(unsigned long long n, bool flag) const override
    {
        return createNewChunk(n, flag);
    }
    RefPtr<TypedChunkBase<T>> createNewChunk(unsigned long long n, bool /*flag*/) const override
    {
        return RefPtr<TypedChunkBase<T>>(new Chunk(n));
    }

private:
    void count()
    {
        countedBytes_ = static_cast<std::int64_t>(this->size() * sizeof(T));
        ChunkBase::TotalMemsize += countedBytes_;
    }

    std::int64_t countedBytes_ = 0;
};

extern template class Chunk<double>;
extern template class Chunk<bool>;

} // namespace Tolmen
