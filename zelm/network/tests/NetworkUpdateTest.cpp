#include <zelm/network/NetworkUpdate.h>

#include "Complaint.h"
#include "TestObjects.h"
#include <zelm/network/NetworkBuilder.h>
#include <zelm/network/NetworkReader.h>

#include <quorl/slots/VParameter.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValuePool.h>

#include <gtest/gtest.h>

#include <string>

namespace Zelm
{
namespace
{

/// A network of one sum, with these values for all contexts, and these in the context "one".
NetworkDocument document(const std::string& all, const std::string& one)
{
    return readNetwork(
        "a.json",
        R"({"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum", "values": {)" +
            all + R"(}}], "contexts": [{"name": "one", "values": {"a": {)" + one +
            R"(}}}, {"name": "two"}]})");
}

struct NetworkUpdate : testing::Test
{
    explicit NetworkUpdate() : network(buildNetwork(before, {})) {}
    ~NetworkUpdate() override { network->remove(); }

    bool update(const NetworkDocument& after) { return updateNetwork(*network, before, after); }

    std::string textOf(const std::string& input, const std::string& context) const
    {
        return network->object("a")->getParameter(input)->getValueAsText(network->context(context),
                                                                         "", false);
    }

    Quorl::Ageable ageOf(const std::string& input, const std::string& context) const
    {
        return network->object("a")->getParameter(input)->age(network->context(context));
    }

    const NetworkDocument before = document(R"("left": 5, "scale": 6)", R"("left": 7)");
    const RefPtr<LoadedNetwork> network;
};

TEST_F(NetworkUpdate, SetsWhatDiffersAndTouchesNothingElse)
{
    const Quorl::Ageable left = ageOf("left", "one");
    const Quorl::Ageable scale = ageOf("scale", "one");
    EXPECT_TRUE(update(document(R"("left": 5, "scale": 6)", R"("left": 7, "right": 8)")));

    EXPECT_EQ(textOf("right", "one"), "8");
    EXPECT_EQ(textOf("right", "two"), "2");
    EXPECT_EQ(ageOf("left", "one"), left);
    EXPECT_EQ(ageOf("scale", "one"), scale);
}

TEST_F(NetworkUpdate, CarriesAValueOfAllIntoTheContextsThatTellNothing)
{
    EXPECT_TRUE(update(document(R"("left": 9, "scale": 6)", R"("left": 7)")));

    EXPECT_EQ(textOf("left", "one"), "7");
    EXPECT_EQ(textOf("left", "two"), "9");
}

TEST_F(NetworkUpdate, TakesBackWhatIsToldNoMore)
{
    EXPECT_TRUE(update(document("", "")));

    EXPECT_EQ(textOf("left", "one"), "1");
    EXPECT_EQ(textOf("left", "two"), "1");
    EXPECT_EQ(textOf("scale", "one"), "3");
}

TEST_F(NetworkUpdate, LeavesAloneWhatHasAnotherStructure)
{
    NetworkDocument after = document(R"("left": 9)", "");
    after.objects.push_back(after.objects.front());
    after.objects.back().name = "b";

    EXPECT_FALSE(update(after));
    EXPECT_EQ(textOf("left", "two"), "5");
}

TEST_F(NetworkUpdate, PassesOverObjectsThatHaveEnded)
{
    network->object("a")->remove();

    EXPECT_TRUE(update(document(R"("left": 9)", "")));
}

TEST_F(NetworkUpdate, TellsWhereAValueIsRefused)
{
    EXPECT_EQ(
        complaintOf([&] { update(document(R"("left": 5, "scale": "x")", R"("left": 7)")); }),
        "a.json:1:101: object \"a\", key \"values.scale\": a number is expected here, not \"x\"");
}

} // namespace
} // namespace Zelm
