#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// Makes values of one type from texts. Creators are found by the name of the type.
///
/// Threads: the table has no lock; it is filled while libraries are loaded.
class QUORL_API VValueCreator : public Tolmen::ReferenceBase<VValueCreator>
{
public:
    ~VValueCreator() override;

    /// Makes a value from its text; `ok` tells whether the text was taken.
    virtual RefPtr<VValueBase> create(const string& text, bool& ok) = 0;

    /// Enters the creator of a type, weakly, in place of an earlier one. The entry stays when the
    /// creator ends.
    static void registerCreator(const WeakPtr<VValueCreator>& creator, const string& type);

    /// Makes a value of the type of that name (`Tolmen::Typename`).
    /// \return null for an unknown type, for which `ok` is left as it was, and for a type whose
    /// creator has gone, for which `ok` becomes false. Otherwise what the creator answers: a value,
    /// as a rule also if it refused the text.
    static RefPtr<VValueBase> create(const string& type, const string& text, bool& ok);
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VValueCreator>;
} // namespace Tolmen
