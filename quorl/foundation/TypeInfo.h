#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/Forward.h>

#include <string>
#include <typeinfo>

namespace Tolmen
{

/// A type as the key of a map, in the order of `std::type_info::before`.
///
/// A key stays usable when the module that defined the type is unloaded: it refers to a record of
/// the type's name that is kept for the life of the process, not to the type itself.
class TOLMEN_API TypeInfo
{
public:
    TypeInfo(const std::type_info& type);
    ~TypeInfo() = default;
    TypeInfo(const TypeInfo&) = default;
    TypeInfo& operator=(const TypeInfo&) = default;

    /// A type that is equal to the one of this key, and stays when that one leaves. Of an unnamed
    /// namespace it is the type itself, not to be used once its module is unloaded.
    const std::type_info& get() const;

    const std::string& name() const; ///< as the compiler has it; for people see `Typename`

    bool operator<(const TypeInfo& other) const;
    bool operator==(const TypeInfo& other) const { return record_ == other.record_; }

    struct Record;

private:
    const Record* record_; // one for each type, so that equal types have one address
};

} // namespace Tolmen
