#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <map>
#include <memory>
#include <typeinfo>

namespace Quorl
{

/// The arguments of a call, by name. Those without a name stand under their position, "1" being the
/// first. The names are in the order of texts: "10" stands before "2".
///
/// Threads: no lock.
class QUORL_API VScriptParameters : public Tolmen::ReferenceBase<VScriptParameters>
{
public:
    /// Visits arguments, which may be null; true goes on.
    class QUORL_API iterator
    {
    public:
        virtual ~iterator();
        virtual bool apply(const string& name, const RefPtr<VScriptValue>& value) = 0;
    };

    VScriptParameters();
    VScriptParameters(const VScriptParameters&) = delete;
    VScriptParameters& operator=(const VScriptParameters&) = delete;
    ~VScriptParameters() override;

    /// Enters an argument under the number of arguments with it. Deliberate: named ones count, and
    /// one that has that number for a name is replaced. \return true.
    bool append(const RefPtr<VScriptValue>& value);

    /// Puts an argument in the place of an earlier one of the name. \return true.
    bool insert(const string& name, const RefPtr<VScriptValue>& value);

    RefPtr<VScriptValue> find(const string& name) const; ///< null if there is none

    /// The live argument `first`, otherwise what there is under `second`: by name or by position.
    RefPtr<VScriptValue> find(const string& first, const string& second) const;

    /// The representation of such an argument in one of two types; the first is preferred.
    RefPtr<VScriptTypedValue> get(const string& first, const string& second,
                                  const std::type_info& firstType,
                                  const std::type_info& secondType) const;

    /// Visits the arguments in the order of names. \return the number of visits that answered true.
    int iterate(iterator& visitor);

private:
    using Table = std::map<string, RefPtr<VScriptValue>>;

    const std::unique_ptr<Table> table_;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VScriptParameters>;
} // namespace Tolmen
