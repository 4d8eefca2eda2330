#include <quorl/kit/Network.h>

#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

class Pair final : public VObject
{
public:
    using VObject::VObject;
    bool isConnectable = true;

    bool allowParameterReplacement(const RefPtr<VParameter>& /*source*/,
                                   const RefPtr<VParameter>& /*destination*/,
                                   const string& slotName, int /*level*/) override
    {
        return isConnectable || slotName != "b";
    }

private:
    InputSlot<double> a_{*this, "a"};
    InputSlot<int> b_{*this, "b"};
    OutputSlot<double> number_{*this, "number"};
    OutputSlot<int> count_{*this, "count"};
};

VCreator<Pair> pairs("Network/Pair", {.accepts = {typeid(double), typeid(int)}});

struct KitNetwork : testing::Test
{
    ~KitNetwork() override
    {
        for (const auto& object : {parent, child}) object->remove();
    }

    const RefPtr<VObject> parent = findCreator("Network/Pair")->create("parent", {});
    const RefPtr<VObject> child = findCreator("Network/Pair")->create("child", {});
};

TEST_F(KitNetwork, FindsCreatorsByTheirKey)
{
    EXPECT_EQ(findCreator("Network/Pair").rawptr(), &pairs);
    EXPECT_FALSE(findCreator("Network/Nobody"));
}

TEST_F(KitNetwork, SetsInputsByText)
{
    const auto pool = QuorlTest::makePool();
    EXPECT_TRUE(setText(*child, "a", "2.5"));
    EXPECT_TRUE(setText(*child, "b", "7", pool));
    EXPECT_FALSE(setText(*child, "c", "7"));
    EXPECT_EQ(child->getParameter("a")->getValueAsText({}, "", false), "2.5");
    EXPECT_EQ(child->getParameter("b")->getValueAsText(pool, "", false), "7");
}

TEST_F(KitNetwork, SetsInputsThatHaveNoValueInAContextYet)
{
    const auto pool = QuorlTest::makePool();
    child->getParameter("a")->Localize();
    EXPECT_TRUE(setText(*child, "a", "2.5", pool));
    EXPECT_EQ(child->getParameter("a")->getValueAsText(pool, "", false), "2.5");
    EXPECT_EQ(child->getParameter("a")->getValueAsText({}, "", false), "0");
}

TEST_F(KitNetwork, ConnectsAllThatFits)
{
    EXPECT_EQ(connectInAllWays(parent, child), "");
    EXPECT_EQ(child->getParameter("a"), parent->getOutput("number")->Parameter);
    EXPECT_EQ(child->getParameter("b"), parent->getOutput("count")->Parameter);
}

TEST_F(KitNetwork, TellsTheWayThatFails)
{
    const RefPtr<Pair> pair = child;
    pair->isConnectable = false;
    EXPECT_EQ(connectInAllWays(parent, child), "count");
}

} // namespace
} // namespace Quorl
