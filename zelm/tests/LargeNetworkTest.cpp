#include "HostFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace Zelm
{
namespace
{

/// A chain of many objects, each behind the one before.
std::string chainOf(int length)
{
    std::string text = "{\"zelm-network\": 1, \"objects\": [\n";
    for (int at = 0; at < length; ++at)
    {
        text += R"({"name": "o)" + std::to_string(at) + R"(", "creator": "Test/Sum")";
        if (at > 0) text += R"(, "inputs": {"left": "o)" + std::to_string(at - 1) + ".sum\"}";
        text += at + 1 < length ? "},\n" : "}\n";
    }
    return text + "]}\n";
}

class LargeNetwork : public HostFixture
{
protected:
    LargeNetwork() { writeBytes(folder / "a.json", chainOf(ZELM_LARGE)); }

    const std::string last = "o" + std::to_string(ZELM_LARGE - 1);
};

TEST_F(LargeNetwork, RunsToItsEnd)
{
    zelm("run a.json --json");

    ASSERT_EQ(status, 0) << err;
    EXPECT_EQ(json()["requests"][0]["ran"].size(), static_cast<std::size_t>(ZELM_LARGE));
}

TEST_F(LargeNetwork, IsExplained)
{
    zelm("why a.json " + last + " --set o0.left=2 --json");

    ASSERT_EQ(status, 0) << err;
    const Json answer = json()["answers"][0];
    EXPECT_EQ(answer["chain"].size(), static_cast<std::size_t>(ZELM_LARGE));
    EXPECT_EQ(answer["start"], "o0.left was changed");
    EXPECT_EQ(answer["foreseen"], true);
}

/// Objects that each take both inputs from the one before: 2^60 paths.
class ManyPaths : public HostFixture
{
protected:
    static constexpr int kObjects = 60;

    ManyPaths()
    {
        std::string text = "{\"zelm-network\": 1, \"objects\": [\n";
        text += R"({"name": "o0", "creator": "Test/Sum"})";
        for (int at = 1; at < kObjects; ++at)
        {
            const std::string source = "\"o" + std::to_string(at - 1) + ".sum\"";
            text += ",\n{\"name\": \"o" + std::to_string(at) + "\", \"creator\": \"Test/Sum\"";
            text += ", \"inputs\": {\"left\": " + source + ", \"right\": " + source + "}}";
        }
        writeBytes(folder / "a.json", text + "]}\n");
    }
};

TEST_F(ManyPaths, AreNotTimedToTheirEnd)
{
    zelm("run a.json --json");

    ASSERT_EQ(status, 0) << err;
    const Json ran = json()["requests"][0]["ran"];
    ASSERT_EQ(ran.size(), static_cast<std::size_t>(kObjects));
    EXPECT_TRUE(ran.front()["milliseconds"].is_number());
    EXPECT_TRUE(ran.back()["milliseconds"].is_null());
}

} // namespace
} // namespace Zelm
