#include <quorl/modules/VInitialization.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

TEST(VInitialization, StartsEmptyAndNotAcceptable)
{
    const VInitialization initialization("stem");
    EXPECT_STREQ(initialization.plugin, "stem");
    EXPECT_EQ(initialization.version, nullptr);
    EXPECT_FALSE(initialization.acceptable());
    EXPECT_EQ(initialization.author + initialization.title + initialization.description +
                  initialization.url,
              "");
    for (const long number : initialization.number) EXPECT_EQ(number, 0);
    EXPECT_TRUE(initialization.keywords.empty());
}

TEST(VInitialization, ComparesTheWordThatItIsTold)
{
    VInitialization initialization("stem");
    EXPECT_TRUE(initialization.IsCompatible("ZELM_API_VERSION"));
    EXPECT_TRUE(initialization.acceptable());
    for (const char* word : {"ZELM_API_2017_AUG_07", "ZELM_API_VERSION ", "ZELM_API_VERSIO", ""})
    {
        EXPECT_FALSE(initialization.IsCompatible(word));
        EXPECT_STREQ(initialization.version, word);
        EXPECT_FALSE(initialization.acceptable());
    }
    EXPECT_FALSE(initialization.IsCompatible(nullptr));
}

TEST(VInitialization, HasAnOperationThatDoesNothing)
{
    VInitialization::initPlugin(InitPluginLoad, "a", "b");
    VInitialization::initPlugin(InitPluginUnload, nullptr, nullptr);
    EXPECT_EQ(InitPluginReload, 2);
    EXPECT_STRNE(VInitialization::ZelmReleaseString, "");
}

} // namespace
} // namespace Quorl
