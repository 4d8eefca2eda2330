#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/TypeInfo.h>

#include <map>
#include <memory>
#include <typeinfo>

namespace Quorl
{

/// A value on its way between a script and an object: one datum, maybe in several types at once, as
/// a text for each, so that whoever gets it picks the one that it understands.
///
/// Shared through handles, never copied. Threads: no lock.
class QUORL_API VScriptValue : public Tolmen::ReferenceBase<VScriptValue>
{
public:
    /// Visits representations; true goes on.
    class QUORL_API iterator
    {
    public:
        virtual ~iterator();
        virtual bool apply(const std::type_info& type, VScriptTypedValue& value) = 0;
    };

    VScriptValue();
    VScriptValue(const std::type_info& type, const RefPtr<VScriptTypedValue>& value);
    VScriptValue(const std::type_info& type, const string& text);
    VScriptValue(const VScriptValue&) = delete;
    VScriptValue& operator=(const VScriptValue&) = delete;
    ~VScriptValue() override;

    /// Puts a representation in the place of an earlier one of the type.
    void insert(const std::type_info& type, const RefPtr<VScriptTypedValue>& value);
    void remove(const std::type_info& type);

    bool hasType(const std::type_info& type) const;
    unsigned long long polymorphism() const; ///< the number of representations

    RefPtr<VScriptTypedValue> getUnique() const; ///< the only one; null if there are more or none
    RefPtr<VScriptTypedValue> get(const std::type_info& type) const; ///< null if there is none

    /// The live representation in `first`, otherwise what there is in `second`.
    RefPtr<VScriptTypedValue> get(const std::type_info& first, const std::type_info& second) const;

    /// Visits the live representations. \return the number of visits that answered true.
    int iterate(iterator& visitor);

private:
    using Table = std::map<Tolmen::TypeInfo, RefPtr<VScriptTypedValue>>;

    const std::unique_ptr<Table> table_;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VScriptValue>;
} // namespace Tolmen
