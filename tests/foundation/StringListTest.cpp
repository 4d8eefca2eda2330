#include <quorl/foundation/StringList.h>

#include <gtest/gtest.h>

namespace Tolmen
{
namespace
{

TEST(StringList, IsEmptyWhenNewAndCanBeHeld)
{
    const RefPtr<StringList> list(new StringList);
    EXPECT_TRUE(list->empty());
    list->push_back("a");
    EXPECT_EQ(list->front(), "a");
}

} // namespace
} // namespace Tolmen
