#include <quorl/foundation/MutableName.h>

#include <gtest/gtest.h>

namespace Tolmen
{
namespace
{

TEST(MutableName, GivesTheLeadingPartOfACompoundName)
{
    EXPECT_EQ(MutableName::BaseName("base\x1Erest\x1Emore", 0x1E), "base");
    EXPECT_EQ(MutableName::BaseName("base", 0x1E), "base");
    EXPECT_EQ(MutableName::BaseName("\x1E", 0x1E), "");
    MutableName name("first");
    name.setName("second");
    EXPECT_EQ(name.getName(), "second");
    EXPECT_EQ(name.name, "second");
}

} // namespace
} // namespace Tolmen
