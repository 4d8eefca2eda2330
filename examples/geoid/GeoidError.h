#pragma once

#include <stdexcept>

namespace Geoid
{

/// The one failure of this program: a sentence for the person who started it, in one line without
/// a full stop, which names the file or the parameter at fault. Nothing was changed by the call
/// that throws it.
class GeoidError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace Geoid
