#include "Affine.h"

#include <gtest/gtest.h>

namespace Volumes
{
namespace
{

constexpr Affine kSkew{{2.0, 0.5, 0.0}, {-1.0, 3.0, 0.25}, {0.5, 0.0, -4.0}, {10.0, -20.0, 5.0}};

void expectNear(const Vector& left, const Vector& right)
{
    EXPECT_NEAR(left.x, right.x, 1e-12);
    EXPECT_NEAR(left.y, right.y, 1e-12);
    EXPECT_NEAR(left.z, right.z, 1e-12);
}

TEST(Affine, IsTakenBackByItsInverse)
{
    const Vector place{3.0, -7.0, 11.0};

    expectNear(kSkew.inverse().place(kSkew.place(place)), place);
    expectNear(kSkew.place(kSkew.inverse().place(place)), place);
}

TEST(Affine, TurnsTheGradientOfALinearFunction)
{
    // f(world) = a . world has the gradient transposed(A) a in the lattice, which has to become a.
    const Vector a{1.5, -2.0, 0.75};
    const Vector inLattice{dot(a, kSkew.x), dot(a, kSkew.y), dot(a, kSkew.z)};

    expectNear(kSkew.turnedGradient(inLattice), a);
}

TEST(Affine, TellsWhetherItKeepsThreeDimensions)
{
    EXPECT_TRUE(kSkew.isInvertible());
    EXPECT_TRUE((Affine{{1e-3, 0, 0}, {0, 1e-3, 0}, {0, 0, 1e-3}, {}}.isInvertible()));
    EXPECT_FALSE((Affine{{1, 0, 0}, {0, 1, 0}, {}, {}}.isInvertible()));
    EXPECT_FALSE((Affine{{1, 2, 3}, {2, 4, 6}, {0, 0, 1}, {}}.isInvertible()));
    EXPECT_FALSE((Affine{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1.0 / 0.0, 0, 0}}.isInvertible()));
}

} // namespace
} // namespace Volumes
