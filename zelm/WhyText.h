#pragma once

#include <zelm/why/Explanation.h>

#include <string>

namespace Zelm
{

/// Why an object runs in a context, or does not.
struct Answer
{
    std::string context;
    std::string request; ///< the object that is requested; empty if none is in this context
    Explanation explanation;
    bool isForeseen = true; ///< whether that was told before the request
};

/// A line with the answer, and a table of what it rests on.
std::string textOf(const Answer& answer);
Json jsonOf(const Answer& answer);

} // namespace Zelm
