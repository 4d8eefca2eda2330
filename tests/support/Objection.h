#pragma once

#include <quorl/services/VActionNotifier.h>

namespace QuorlTest
{

/// Objects to all attachments while it is active.
struct Objection final : Quorl::VActionNotifier
{
    bool attachPrefix(const Quorl::RefPtr<Quorl::VParameter>& /*parameter*/,
                      const Quorl::RefPtr<Quorl::VSlot>& /*slot*/) override
    {
        return false;
    }
};

} // namespace QuorlTest
