#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Watched.h>

#include <cstdint>
#include <set>

namespace Quorl
{

/// The input classes to which an object reacts. Filled by the object.
class QUORL_API VInputClassRecognition
{
public:
    /// Class 0 is never ignored; of the others all that are not in the set are.
    bool checkIfIgnoredInputClass(int inputClass) const
    {
        return inputClass != 0 && !classes.contains(inputClass);
    }

    Tolmen::WatchedTable<std::set<std::int32_t>> classes;
};

} // namespace Quorl
