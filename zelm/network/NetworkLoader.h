#pragma once

#include "NetworkDocument.h"

#include <quorl/modules/VLoader.h>

#include <memory>
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

    /// From now on the document that was read last is kept, for who compares it with a later one.
    void keepDocument() { keepsDocument_ = true; }

    /// \return null if none is kept.
    const std::shared_ptr<const NetworkDocument>& document() const { return document_; }

private:
    bool keepsDocument_ = false;
    std::shared_ptr<const NetworkDocument> document_;
};

} // namespace Zelm
