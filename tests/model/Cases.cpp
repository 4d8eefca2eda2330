#include <cstdlib>

/// How many cases each property is tried on, unless RC_PARAMS in the environment tells otherwise.
/// It is looked at when the first property runs. A reproduction is told with each failure.
namespace
{

const int ignored = ::setenv("RC_PARAMS", "max_success=" MODEL_CASES " max_size=100", 0);

} // namespace
