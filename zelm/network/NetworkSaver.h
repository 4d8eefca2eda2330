#pragma once

#include <quorl/modules/ZelmSaver.h>

#include <string>

namespace Zelm
{

/// Saves all objects and contexts of the process as a network file. The file is whole, or as it
/// was.
class NetworkSaver final : public Quorl::ZelmSaver
{
public:
    NetworkSaver();

    /// \return false if it cannot be done; the subscribers of the action channel are warned why.
    bool save(const std::string& file) override;

    /// Enters one among the savers of the application's state, as "network".
    static void enter();
};

} // namespace Zelm
