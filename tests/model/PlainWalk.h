#pragma once

#include <quorl/objects/VObject.h>

namespace QuorlTest
{

/// What `VObject::request` does, in the plainest way: it recurses, looks at everything each time
/// and keeps nothing between two requests. The measure of whatever the kernel does to be quicker.
///
/// It asks other objects by their virtual `request`.
bool requestPlainly(Quorl::VObject& object, Quorl::VRequest& request, double precision,
                    const Quorl::WeakVObjectPtr& caller, const Quorl::WeakVObjectPtr& origin);

/// An object that is walked by the kernel.
class KernelWalked : public Quorl::VObject
{
public:
    using VObject::VObject;
};

/// An object that is walked plainly. A network of such objects is never walked by the kernel.
class PlainlyWalked : public Quorl::VObject
{
public:
    using VObject::VObject;

    /// How often objects may still be walked, all of them together. Requests do nothing then, so
    /// that whatever is under way comes to its end.
    static inline int visitsLeft = 0;

    bool request(Quorl::VRequest& request, double precision, const Quorl::WeakVObjectPtr& caller,
                 const Quorl::WeakVObjectPtr& origin) override
    {
        if (visitsLeft == 0) return false;
        --visitsLeft;
        return requestPlainly(*this, request, precision, caller, origin);
    }
};

} // namespace QuorlTest
