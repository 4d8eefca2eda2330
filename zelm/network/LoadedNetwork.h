#pragma once

#include "NetworkDocument.h"

#include <quorl/Forward.h>
#include <quorl/foundation/Interface.h>
#include <quorl/foundation/RefPtr.h>

#include <string>
#include <utility>
#include <vector>

namespace Zelm
{

using Quorl::RefPtr;
using Quorl::WeakPtr;

/// The network that was made of a file: a service of each of its objects, which own it together.
///
/// Objects are known here by their names in the file; the registry may have changed them.
class LoadedNetwork final : public Tolmen::Interface<LoadedNetwork>
{
public:
    /// A value of a context that belongs to no object. Pools hold these weakly.
    struct Named
    {
        std::string name;
        RefPtr<Quorl::ValuePool> pool;
        RefPtr<Quorl::VValueBase> value;
        Json kept; ///< keys that nobody here knows
    };

    ~LoadedNetwork() override;

    /// The network that an object belongs to; null if it comes from no file.
    static RefPtr<LoadedNetwork> of(const RefPtr<Quorl::VObject>& object);

    /// \return null if there is none of that name, or it has ended.
    RefPtr<Quorl::VObject> object(const std::string& name) const;
    RefPtr<Quorl::ValuePool> context(const std::string& name) const;

    std::vector<RefPtr<Quorl::VObject>> liveObjects() const;

    /// Takes all objects out of the registry.
    void remove();

    NetworkDocument frame; ///< what the file says beside objects and the values of contexts
    std::vector<std::pair<std::string, WeakPtr<Quorl::VObject>>> objects; ///< in their order
    std::vector<RefPtr<Quorl::ValuePool>> contexts;                       ///< in their order
    std::vector<Named> named;
};

} // namespace Zelm
