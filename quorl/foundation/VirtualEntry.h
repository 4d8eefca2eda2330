#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace Tolmen
{

/// What an object runs for a virtual operation: two objects with the same entry run the same
/// implementation. Null where tables and member pointers are not laid out in the common way of the
/// Itanium C++ ABI (its section 2.3, and 2.5.3 of the tables).
///
/// \param operation a virtual operation that `Class` or a base of it declares.
template <class Class, class Operation>
    requires std::is_function_v<Operation>
const void* virtualEntry([[maybe_unused]] const std::type_identity_t<Class>& object,
                         [[maybe_unused]] Operation Class::* operation)
{
#if defined(__GXX_ABI_VERSION) && !defined(__arm__) && !defined(__aarch64__)
    struct
    {
        std::ptrdiff_t oddPlace;   // in the table, in bytes, and one: a virtual operation is odd
        std::ptrdiff_t adjustment; // from the object to the base that has the operation
    } pointer;
    static_assert(sizeof pointer == sizeof operation);
    std::memcpy(&pointer, &operation, sizeof pointer);
    const char* table = nullptr;
    const void* entry = nullptr;
    std::memcpy(&table, reinterpret_cast<const char*>(&object) + pointer.adjustment, sizeof table);
    std::memcpy(&entry, table + (pointer.oddPlace - 1), sizeof entry);
    return entry;
#else
    return nullptr;
#endif
}

} // namespace Tolmen
