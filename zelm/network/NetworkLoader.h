#pragma once

#include <quorl/modules/VLoader.h>

#include <string>

namespace Zelm
{

using Quorl::RefPtr;

/// Reads network files, which end in ".json". What it gives is a creator of the whole network, each
/// time anew; the object that stands for it is the first that the file requests, or else its last.
///
/// The other objects are found by `LoadedNetwork::of` that one.
class NetworkLoader final : public Quorl::VLoader
{
public:
    NetworkLoader();

    LoadSuccess check(const std::string& file) override;

    /// Refuses what is wrong in the file itself. A missing creator, and what the objects refuse, is
    /// thrown by the creator that this gives, as a `NetworkError`.
    RefPtr<Quorl::VManagedObject> load(LoadSuccess& success, const std::string& file,
                                       const std::string& name) override;
};

} // namespace Zelm
