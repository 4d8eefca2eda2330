#include <quorl/foundation/LastKnownSourceCodeLine.h>

#include <gtest/gtest.h>

#include <thread>

namespace Tolmen
{
namespace
{

TEST(LastKnownSourceCodeLine, KeepsThePointerForEachThread)
{
    const char* const before = getLastKnownSourceCodeLine();
    const char* const here = "a.cpp:12";
    SetLastKnownSourceCodeLine(here);
    EXPECT_EQ(getLastKnownSourceCodeLine(), here);
    std::thread([] { EXPECT_EQ(getLastKnownSourceCodeLine(), nullptr); }).join();
    SetLastKnownSourceCodeLine(before);

    EXPECT_EQ(getLastKnownSourceCodeLine(), before);
}

} // namespace
} // namespace Tolmen
