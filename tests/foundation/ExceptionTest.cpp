#include <quorl/foundation/Exception.h>

#include <gtest/gtest.h>

namespace Tolmen
{
namespace
{

TEST(Exception, KeepsItsTextInACopy)
{
    const Exception copied = Exception("what went wrong");
    const std::exception& base = copied;

    EXPECT_STREQ(base.what(), "what went wrong");
    EXPECT_STREQ(Exception().what(), "");
    EXPECT_NO_THROW(static_cast<void>(MemoryException()));
}

} // namespace
} // namespace Tolmen
