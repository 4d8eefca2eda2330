#include <quorl/objects/VContext.h>
#include <tests/support/SecondsNow.h>

#include <quorl/values/ValuePool.h>
#include <quorl/values/ValuePoolProvider.h>

#include <gtest/gtest.h>

#include <ctime>

namespace Quorl
{
namespace
{

bool equal(const VContext::RealTime& left, const VContext::RealTime& right)
{
    return left.Seconds == right.Seconds && left.Year == right.Year && left.Month == right.Month &&
           left.Day == right.Day && left.Hour == right.Hour && left.Minute == right.Minute &&
           left.Second == right.Second && left.Millisecond == right.Millisecond;
}

TEST(VContext, ShowsThePinnedMomentHoweverLateItIsMade)
{
    const RefPtr<VContext::Addendum> addendum(new VContext::Addendum);
    addendum->setNow();
    const RefPtr<VContext::TimeInterface> pinned =
        addendum->findInterface(typeid(VContext::RealTime));
    ASSERT_TRUE(pinned);
    pinned->Year = 1899;
    pinned->Seconds = 12.5;

    VContext context(addendum);
    EXPECT_TRUE(equal(context.Time, *pinned));
    context.Spare = 3;
    context.setTime();
    EXPECT_TRUE(equal(context.Time, *pinned));
    EXPECT_EQ(context.Spare, 0);
}

TEST(VContext, TakesTheLaterOfTwoPinnedMoments)
{
    const RefPtr<VContext::Addendum> addendum(new VContext::Addendum);
    addendum->setNow();
    const RefPtr<Tolmen::InterfaceBase> first = addendum->findInterface(typeid(VContext::RealTime));
    addendum->setNow();

    EXPECT_FALSE(addendum->findInterface(typeid(VContext::RealTime)) == first);
}

TEST(VContext, ReadsTheClockWithoutAPinnedMoment)
{
    const RefPtr<VContext::Addendum> empty(new VContext::Addendum);
    const std::time_t before = QuorlTest::secondsNow();
    const VContext context(empty);
    const std::time_t after = QuorlTest::secondsNow();

    std::tm local{};
    local.tm_year = context.Time.Year - 1900;
    local.tm_mon = context.Time.Month - 1;
    local.tm_mday = context.Time.Day;
    local.tm_hour = context.Time.Hour;
    local.tm_min = context.Time.Minute;
    local.tm_sec = context.Time.Second;
    local.tm_isdst = -1;
    const std::time_t shown = std::mktime(&local);
    EXPECT_LE(before, shown);
    EXPECT_LE(shown, after);
    EXPECT_GE(context.Time.Millisecond, 0);
    EXPECT_LT(context.Time.Millisecond, 1000);
}

TEST(VContext, CountsSecondsSince1601FromTheCalendarTime)
{
    VContext::RealTime now;
    now.setNow();
    std::tm calendar{};
    calendar.tm_year = now.Year - 1900;
    calendar.tm_mon = now.Month - 1;
    calendar.tm_mday = now.Day;
    calendar.tm_hour = now.Hour;
    calendar.tm_min = now.Minute;
    calendar.tm_sec = now.Second;
    const double sinceThen = 11644473600.0 + static_cast<double>(timegm(&calendar));

    EXPECT_NEAR(now.Seconds, sinceThen + now.Millisecond / 1000.0, 1e-4);
}

TEST(VContext, TakesAPoolAndAnAddendumAsTheyAre)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    const RefPtr<VContext::Addendum> addendum(new VContext::Addendum);
    const VContext context(pool, addendum);

    EXPECT_EQ(context.Pool, pool);
    EXPECT_EQ(context.Extra, addendum);
    EXPECT_FALSE(VContext(addendum).Pool);
}

TEST(VContext, TakesTheProvidersPoolIfThereIsOne)
{
    const RefPtr<ValuePool> pool(new ValuePool);
    const RefPtr<ValuePoolProvider> provider(new ValuePoolProvider(pool));
    EXPECT_EQ(VContext(provider).Pool, pool);

    const RefPtr<ValuePoolProvider> without(new ValuePoolProvider);
    const VContext context(without);
    EXPECT_EQ(context.Pool.referer, nullptr);
    EXPECT_GT(context.Time.Year, 2000);
    EXPECT_EQ(VContext(RefPtr<ValuePoolProvider>()).Pool.referer, nullptr);
}

TEST(VContext, TreatsADeadAddendumOrProviderLikeANullOne)
{
    const RefPtr<VContext::Addendum> addendum(new VContext::Addendum);
    addendum->setNow();
    const RefPtr<ValuePoolProvider> provider(
        new ValuePoolProvider(RefPtr<ValuePool>(new ValuePool)));
    delete addendum.rawptr();
    delete provider.rawptr();

    EXPECT_GT(VContext(addendum).Time.Year, 2000);
    const VContext context(provider);
    EXPECT_EQ(context.Pool.referer, nullptr);
    EXPECT_GT(context.Time.Year, 2000);
}

} // namespace
} // namespace Quorl
