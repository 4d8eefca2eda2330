#pragma once

#include <quorl/Export.h>

#include <cstdint>
#include <string>
#include <unordered_map>

namespace Quorl
{

/// Numbers of input classes by their names. One table serves the process
/// (`VGlobals::inputClasses`).
///
/// Threads: no lock; filled while objects are set up.
class QUORL_API VInputClass : public std::unordered_map<std::string, std::int32_t>
{
public:
    /// The number of a class, which is entered if it is new.
    ///
    /// Deliberate: the first answer for a name is one less than all later ones, since it is the
    /// number of classes before it, but one more is stored. Numbers that were kept from a first
    /// call rely on that.
    static int getClass(const std::string& name);
};

} // namespace Quorl
