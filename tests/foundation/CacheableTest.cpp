#include <quorl/foundation/Cacheable.h>

#include <gtest/gtest.h>

#include <string>

namespace Tolmen
{
namespace
{

class Picture final : public Cacheable
{
public:
    explicit Picture(std::string& l) : log(l) {}
    ~Picture() override { log += "destroyed"; }
    void CacheableDeferredConstructor() override
    {
        log += "deferred" + std::to_string(self.referer->strong) + " ";
    }
    void PreDestructor() override
    {
        log += self.referer->object == poisonedObject() ? "poisoned" : "whole";
        log += std::to_string(self.referer->strong) + " ";
    }
    void extremeUnction() override { log += "unction "; }
    std::string& log;
};

TEST(Cacheable, IsConstructedByItsFirstStrongHandleAndEndedInTwoSteps)
{
    std::string log;
    {
        const WeakPtr<Picture> weak(new Picture(log));
        EXPECT_EQ(log, "");
        const RefPtr<Picture> strong(weak);
        EXPECT_EQ(log, "deferred0 ") << "before it counts";
        const RefPtr<Cacheable> second(strong);
        EXPECT_EQ(log, "deferred0 ") << "once";
    }
    EXPECT_EQ(log, "deferred0 unction poisoned-1 destroyed");
}

TEST(Cacheable, IsConstructedByAnAssignmentToo)
{
    std::string log;
    const WeakPtr<Picture> weak(new Picture(log));
    RefPtr<Cacheable> strong;
    strong = weak;
    EXPECT_EQ(log, "deferred0 ");
    strong = RefPtr<Cacheable>();

    EXPECT_EQ(log, "deferred0 unction poisoned-1 destroyed");
}

TEST(Cacheable, IsNotConstructedByHandlesToTheDead)
{
    std::string log;
    WeakPtr<Picture> weak;
    {
        Picture onTheStack(log);
        weak = &onTheStack;
    }
    EXPECT_EQ(log, "destroyed") << "without the two steps of handles";
    const RefPtr<Picture> locked(weak);

    EXPECT_FALSE(locked);
    EXPECT_EQ(log, "destroyed");
}

TEST(Cacheable, DoesNothingInItsStepsByDefault)
{
    struct Plain final : Cacheable
    {
    };
    const RefPtr<Cacheable> owner(new Plain);
    EXPECT_TRUE(owner);
    EXPECT_EQ(owner.referer->strong, 1);
}

} // namespace
} // namespace Tolmen
