#include <quorl/foundation/AddressString.h>

#include <gtest/gtest.h>

#include <cstdio>

namespace Tolmen
{
namespace
{

TEST(AddressString, IsAPointerAsText)
{
    int here = 0;
    char expected[32];
    std::snprintf(expected, sizeof expected, "%p", static_cast<void*>(&here));

    EXPECT_EQ(to_address_string(&here), expected);
}

} // namespace
} // namespace Tolmen
