#include <quorl/foundation/Attributes.h>

#include <quorl/foundation/Chunk.h>

#include <gtest/gtest.h>

namespace Tolmen
{
namespace
{

TEST(Attributes, HoldChunksByName)
{
    Attributes attributes;
    EXPECT_EQ(attributes.getAttribute("enabled").referer, nullptr);
    attributes.setAttribute("enabled", RefPtr<ChunkBase>(new Chunk<bool>(1, true)));
    const Attributes copied(attributes);

    const RefPtr<Chunk<bool>> found = copied.getAttribute("enabled");
    ASSERT_TRUE(found);
    EXPECT_TRUE((*found)[0]);
    attributes.setAttribute("enabled", RefPtr<ChunkBase>(new Chunk<double>(1)));
    EXPECT_FALSE(RefPtr<Chunk<bool>>(attributes.getAttribute("enabled")));
}

} // namespace
} // namespace Tolmen
