#include <quorl/foundation/Cache.h>

#include <gtest/gtest.h>

namespace Tolmen
{
namespace
{

struct Data final : Cacheable
{
};

TEST(CacheOutOfMemory, SaysWhatCouldNotBeHeld)
{
    const RefPtr<Cacheable> data(new Data);
    try
    {
        throw Cache::OutOfMemory(data, "full");
    }
    catch (const Exception& error)
    {
        const auto& failure = dynamic_cast<const Cache::OutOfMemory&>(error);
        EXPECT_EQ(failure.object, data);
        EXPECT_STREQ(failure.what(), "full");
    }
    EXPECT_EQ(Cache::OutOfMemory().object.referer, nullptr);
}

TEST(CacheOutOfMemory, HoldsItsObjectInACopy)
{
    WeakPtr<Cacheable> observer;
    {
        const RefPtr<Cacheable> data(new Data);
        observer = data;
        const Cache::OutOfMemory failure(data);
        const Cache::OutOfMemory copied(failure);
        EXPECT_EQ(copied.object, data);
        EXPECT_EQ(data.referer->strong, 3);
    }
    EXPECT_FALSE(observer);
}

} // namespace
} // namespace Tolmen
