#pragma once

#include <quorl/Export.h>
#include <quorl/foundation/Chunk.h>
#include <quorl/values/VValueBase.h>

namespace Quorl
{

/// A value whose datum is a `T`, however it is kept. `T` is default-constructible, copyable and
/// comparable by `!=`.
template <class T>
class QUORL_TEMPLATE_API VTypedValueBase : public VValueBase
{
public:
    const std::type_info& getType() const override { return typeid(T); }
    bool isDifferentFrom(const WeakPtr<VValueBase>& other) const override;
    RefPtr<Tolmen::ChunkBase> getChunk(unsigned long long n) const override
    {
        return getChunkOfValue(n);
    }

    /// Gives the datum. \return false if there is none.
    virtual bool getValue(T& datum) const = 0;

    /// Stores the datum; the age stands.
    virtual bool setValue(const T& datum) = 0;

    /// A new chunk of `n` copies of the datum.
    virtual RefPtr<Tolmen::Chunk<T>> getChunkOfValue(unsigned long long n) const = 0;
};

/// A datum that is not equal to itself, such as NaN, differs from itself.
template <class T>
bool VTypedValueBase<T>::isDifferentFrom(const WeakPtr<VValueBase>& other) const
{
    const WeakPtr<VTypedValueBase<T>> typed = other; // one on the stack would end by being held
    if (!typed) return true;
    T mine{};
    T theirs{};
    if (!getValue(mine) || !typed->getValue(theirs)) return true;
    return mine != theirs;
}

} // namespace Quorl
