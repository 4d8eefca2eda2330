#pragma once

#include <quorl/kit/Module.h>
#include <quorl/kit/VCreator.h>

#include <cstdio>

/// An object that says when it is updated.
class Harmless : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& /*request*/, double /*precision*/) override
    {
        std::printf("%s is updated\n", getName().c_str());
        return true;
    }
};

constexpr const char* kOwnPath = "./harm.zelm";
