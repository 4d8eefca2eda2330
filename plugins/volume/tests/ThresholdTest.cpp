#include "Threshold.h"
#include <plugins/volume/tests/Support.h>

#include <gtest/gtest.h>

#include <limits>

namespace Volumes
{
namespace
{

TEST(Threshold, KeepsTheRangeWithItsEndsAndReplacesTheRest)
{
    const Volume volume({5, 1, 1}, {}, {1.0F, 2.0F, 3.0F, 4.0F, 5.0F});

    const Volume kept = threshold(volume, 2.0, 4.0, -1.0);

    EXPECT_EQ(kept, Volume({5, 1, 1}, {}, {-1.0F, 2.0F, 3.0F, 4.0F, -1.0F}));
}

TEST(Threshold, RefusesARangeThatIsEmptyOrNotFinite)
{
    const Volume volume({1, 1, 1}, {}, {1.0F});
    const double infinity = std::numeric_limits<double>::infinity();

    for (const auto& [low, high] :
         {std::pair(2.0, 1.0), std::pair(0.0, infinity), std::pair(std::nan(""), 1.0)})
        EXPECT_EQ(errorOf([&] { threshold(volume, low, high, 0.0); }),
                  "the range of the threshold is empty or not finite");
    EXPECT_EQ(errorOf([&] { threshold(volume, 0.0, 1.0, 1e300); }),
              "what stands outside the threshold is not a finite number");
}

} // namespace
} // namespace Volumes
