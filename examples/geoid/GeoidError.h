#pragma once

#include <stdexcept>

namespace Geoid
{

/// A failure of this program: a sentence for the person who started it, in one line without a full
/// stop. What the modules cannot do they tell in the same form, by an exception of their own.
class GeoidError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace Geoid
