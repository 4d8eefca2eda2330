#include <quorl/slots/VSkale.h>

#include <tests/support/Node.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

TEST(VSkale, AllHaveOneName)
{
    const RefPtr<VSkale> one(new VSkale);
    const RefPtr<VSkale> other(new VSkale);
    EXPECT_STREQ(one->MyName(), "uninitialized");
    EXPECT_EQ(one->MyName(), other->MyName());
}

TEST(VSkale, CanBeWired)
{
    const RefPtr<VSkale> skale(new VSkale);
    const RefPtr<VSlot> input = skale->addParameter("in", 0, QuorlTest::makeParameter("in"), false);
    const RefPtr<VParameter> offered = QuorlTest::makeParameter("offered", 3.0);
    EXPECT_EQ(skale->Connect(offered), input);
    EXPECT_EQ(input->Parameter, offered);
}

} // namespace
} // namespace Quorl
