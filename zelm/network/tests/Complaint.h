#pragma once

#include <zelm/network/NetworkError.h>

#include <string>

namespace Zelm
{

/// What is said of a network that is refused; empty if it is not.
template <class Act>
std::string complaintOf(Act&& act)
{
    try
    {
        act();
        return {};
    }
    catch (const NetworkError& error)
    {
        return error.what();
    }
}

} // namespace Zelm
