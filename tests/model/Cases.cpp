#include <cstdlib>

/// Which cases each property is tried on, unless RC_PARAMS in the environment tells otherwise: the
/// same ones each time, so that what was green stays green. RC_PARAMS="max_success=100000" tries
/// others. It is looked at when the first property runs. A reproduction is told with each failure.
namespace
{

const int ignored =
    ::setenv("RC_PARAMS", "max_success=" MODEL_CASES " max_size=100 seed=20261122", 0);

} // namespace

/// Objects of the model ask each other in their updates in any order, with their locks held. One
/// thread does so, which may lock again what it has locked; two could block each other, and never
/// evaluate.
extern "C" [[gnu::visibility("default")]] const char* __tsan_default_options();
extern "C" const char* __tsan_default_options()
{
    return "detect_deadlocks=0";
}
