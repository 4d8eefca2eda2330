#include <quorl/foundation/Timer.h>

#include <gtest/gtest.h>

namespace Tolmen
{
namespace
{

TEST(Timer, GoesForward)
{
    const Timer timer;
    const double first = timer.seconds();

    EXPECT_GE(first, 0.0);
    EXPECT_GE(timer.seconds(), first);
}

} // namespace
} // namespace Tolmen
