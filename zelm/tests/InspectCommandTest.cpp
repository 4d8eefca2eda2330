#include "HostFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace Zelm
{
namespace
{

using InspectCommand = HostFixture;

/// The entry of a list whose member has that value; null if there is none.
Json entryOf(const Json& list, const std::string& key, const std::string& value)
{
    for (const Json& entry : list)
        if (entry.value(key, "") == value) return entry;
    return nullptr;
}

TEST_F(InspectCommand, TellsOfModulesAndCreators)
{
    zelm("inspect --json");

    ASSERT_EQ(status, 0) << err;
    const Json module = entryOf(json()["modules"], "path", ZELM_TEST_MODULES "/hosttest.zelm");
    EXPECT_EQ(module["state"], "loaded") << out;
    const Json creator = entryOf(json()["creators"], "creator", "Test/Later");
    EXPECT_EQ(creator["module"], "hosttest.zelm");
    EXPECT_EQ(creator["summary"], "Is done later");
    zelm("inspect");
    EXPECT_NE(out.find("\nTest\n"), std::string::npos) << out;
}

TEST_F(InspectCommand, TellsWhyAModuleWasRefused)
{
    const QuorlTest::TemporaryFolder modules;
    writeBytes(modules / "broken.zelm", "this is no library");
    zelm("inspect --json --modules " + modules.path().string());

    EXPECT_EQ(status, 0);
    const Json module = entryOf(json()["modules"], "path", (modules / "broken.zelm").string());
    EXPECT_EQ(module["state"], "refused") << out;
    EXPECT_NE(module["reason"], "") << out;
}

TEST_F(InspectCommand, TellsOfAModuleThatRefuses)
{
    runCommand(commandOf("inspect --json", "HOSTTEST_REFUSES=1"));

    EXPECT_EQ(status, 0) << err;
    const Json module = entryOf(json()["modules"], "path", ZELM_TEST_MODULES "/hosttest.zelm");
    EXPECT_EQ(module["state"], "refused") << out;
    EXPECT_EQ(module["reason"], "its init routine refuses") << out;
}

TEST_F(InspectCommand, TakesTheFirstOfTwoModulesOfOneName)
{
    const QuorlTest::TemporaryFolder modules;
    std::filesystem::copy_file(ZELM_TEST_MODULES "/hosttest.zelm", modules / "hosttest.zelm");
    zelm("inspect --json --modules " + modules.path().string());

    const Json list = json()["modules"];
    EXPECT_FALSE(entryOf(list, "path", (modules / "hosttest.zelm").string()).is_null()) << out;
    EXPECT_TRUE(entryOf(list, "path", ZELM_TEST_MODULES "/hosttest.zelm").is_null()) << out;
}

TEST_F(InspectCommand, TellsOfOneCreatorAndTheSlotsOfItsObjects)
{
    zelm("inspect Test/Sum --json");

    ASSERT_EQ(status, 0) << err;
    EXPECT_EQ(json()["identifier"], "Sum");
    EXPECT_EQ(json()["category"], "Test");
    const Json left = entryOf(json()["inputs"], "slot", "left");
    EXPECT_EQ(left["type"], "double");
    EXPECT_EQ(left["initial"], 1.0);
    EXPECT_EQ(entryOf(json()["inputs"], "slot", "note")["initial"], "");
    EXPECT_EQ(left["per context"], true);
    EXPECT_EQ(left["expert level"], 0);
    EXPECT_EQ(entryOf(json()["outputs"], "slot", "sum")["type"], "double");
    zelm("inspect Test/Later");
    EXPECT_NE(out.find("Tests;More tests"), std::string::npos) << out;
    EXPECT_NE(out.find("\nInputs\n  finer "), std::string::npos) << out;
}

TEST_F(InspectCommand, TellsWhatSlotsPrefer)
{
    zelm("inspect Test/Sum --json");
    EXPECT_EQ(entryOf(json()["inputs"], "slot", "left")["preferences"].dump(), R"({"local":1.0})");
    EXPECT_FALSE(entryOf(json()["inputs"], "slot", "scale").contains("preferences")) << out;

    zelm("inspect Test/Sum");
    EXPECT_NE(out.find("(in each context)"), std::string::npos) << out;
    EXPECT_EQ(out.find("prefers"), std::string::npos) << out;
}

TEST_F(InspectCommand, TellsTextsByTheNameThatPeopleKnow)
{
    zelm("inspect Test/Failing --json");
    EXPECT_EQ(entryOf(json()["inputs"], "slot", "way")["type"], "string");

    zelm("inspect string --json");
    EXPECT_EQ(status, 0) << err;
    EXPECT_EQ(json()["type"], "string");
}

TEST_F(InspectCommand, TellsWhoProvidesAType)
{
    zelm("inspect double --json");

    ASSERT_EQ(status, 0) << err;
    const Json sum = entryOf(json()["providers"], "creator", "Test/Sum");
    EXPECT_EQ(sum["wins"], true) << out;
    EXPECT_EQ(sum["score"], 1.0);
}

} // namespace
} // namespace Zelm
