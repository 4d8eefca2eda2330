#include "Complaint.h"
#include "TestObjects.h"
#include <tests/support/CapturedOutput.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>
#include <zelm/network/LoadedNetwork.h>
#include <zelm/network/NetworkBuilder.h>
#include <zelm/network/NetworkDescription.h>
#include <zelm/network/NetworkLoader.h>
#include <zelm/network/NetworkReader.h>
#include <zelm/network/NetworkSaver.h>
#include <zelm/network/NetworkWriter.h>

#include <quorl/kit/Network.h>
#include <quorl/modules/VSaveable.h>
#include <quorl/objects/VRequest.h>
#include <quorl/services/VActionNotifier.h>

#include <gtest/gtest.h>

#include <string>

namespace Zelm
{
namespace
{

using Quorl::ValuePool;
using Quorl::VLoader;
using Quorl::VObject;
using QuorlTest::bytesOf;
using QuorlTest::writeBytes;

constexpr const char* kSums = R"({
  "zelm-network": 1,
  "title": "Sums",
  "objects": [
    {"name": "first", "creator": "Test/Sum", "values": {"scale": 3.0}, "colour": "red"},
    {"name": "second", "creator": "Test/Sum", "inputs": {"left": "first.sum", "right": {"object": "first", "output": "sum"}, "scale": "first.scale"}},
    {"name": "kinds", "creator": "Test/Inputs", "preferences": ["a", "b"], "values": {"bool": true, "colour": {"type": "Zelm::Colour", "text": "1 2 3"}, "double": 0.1, "text": "ä\n"}}
  ],
  "contexts": [
    {"name": "one", "named": {"step": {"type": "double", "value": 0.25, "unit": "mm"}, "who": {"type": "string", "value": "me"}}, "note": [1], "values": {
      "first": {"left": 10.0}
    }},
    {"name": "two", "values": {
      "first": {"left": 1.0, "right": "inf"}
    }}
  ],
  "request": [
    "second"
  ]
}
)";

struct NetworkRoundTrip : testing::Test
{
    ~NetworkRoundTrip() override { clear(); }

    /// Loads a text as a file, by whichever loader takes it.
    void load(const std::string& text)
    {
        clear();
        writeBytes(folder / "a.json", text);
        loader = RefPtr<NetworkLoader>(new NetworkLoader);
        VLoader::LoadSuccess success;
        main = VLoader::Load(success, (folder / "a.json").string(), "");
        reason = success.reason;
        network = LoadedNetwork::of(main);
        loader->remove();
    }

    void clear()
    {
        if (network) network->remove();
        main = RefPtr<VObject>();
        network = RefPtr<LoadedNetwork>();
    }

    std::string saved()
    {
        const RefPtr<NetworkSaver> saver(new NetworkSaver);
        EXPECT_TRUE(saver->Save((folder / "saved.json").string()));
        return bytesOf(folder / "saved.json");
    }

    /// What the loading of a text is refused with, behind the name of the file.
    std::string complaint(const std::string& text)
    {
        const std::string words = complaintOf([&] { load(text); });
        return (words.empty() ? reason : words).substr((folder / "a.json").string().size());
    }

    double sumOf(const std::string& object, const std::string& context)
    {
        Quorl::VRequest request(network->context(context), false);
        network->object(object)->init_request(request, 1.0);
        const auto output = network->object(object)->getOutput("sum");
        return std::stod(output->getValueBase(network->context(context))->Text());
    }

    QuorlTest::TemporaryFolder folder;
    RefPtr<NetworkLoader> loader;
    RefPtr<VObject> main;
    RefPtr<LoadedNetwork> network;
    std::string reason;
};

/// One object "a" with these further members.
std::string withObject(const std::string& members, const std::string& creator = "Test/Sum")
{
    return R"({"zelm-network": 1, "objects": [{"name": "a", "creator": ")" + creator + "\", " +
           members + "}]}";
}

TEST_F(NetworkRoundTrip, MakesTheNetworkOfTheFile)
{
    load(kSums);

    ASSERT_TRUE(network) << reason;
    EXPECT_EQ(main->getName(), "second");
    EXPECT_EQ(network->liveObjects().size(), 3U);
    EXPECT_EQ(sumOf("second", "one"), 24.0);
    EXPECT_EQ(sumOf("second", "two"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(network->context("one")->retrieveValue("step")->Text(), "0.25");
    EXPECT_EQ(network->object("second")->getParameter("scale"),
              network->object("first")->getParameter("scale"));
}

TEST_F(NetworkRoundTrip, SavesWhatItHasLoaded)
{
    load(kSums);

    const std::string once = saved();
    EXPECT_EQ(once, std::string(kSums).replace(
                        std::string(kSums).find(R"({"object": "first", "output": "sum"})"), 36,
                        R"("first.sum")"));
    EXPECT_EQ(saved(), once);
}

TEST_F(NetworkRoundTrip, SavesKeysThatNobodyKnowsWhereverTheyStand)
{
    const std::string inputs =
        R"("inputs": {"left": {"object": "first", "output": "sum", "since": 1995}, )"
        R"("scale": {"object": "first", "input": "scale", "why": "one for both"}})";
    std::string text = kSums;
    const auto begin = text.find(R"("inputs")");
    text.replace(begin, text.find('}', text.find('}', begin) + 1) + 1 - begin, inputs);
    load(text);

    ASSERT_TRUE(network) << reason;
    EXPECT_EQ(saved(), text);
}

TEST_F(NetworkRoundTrip, SavesTheSameBytesAfterLoadingThemAndAfterRunning)
{
    load(kSums);
    sumOf("second", "one");
    const std::string once = saved();
    clear();
    load(once);
    sumOf("second", "two");

    EXPECT_EQ(saved(), once);
}

TEST_F(NetworkRoundTrip, SavesWhatHasChanged)
{
    load(kSums);
    setInput(*network->object("kinds"), "int", {}, 9);
    setInput(*network->object("first"), "note", network->context("two"), "new");
    network->object("second")->detachSlot(
        network->object("second")->findSlot(network->object("second")->getParameter("scale")));
    const std::string once = saved();

    EXPECT_NE(once.find(R"("int": 9)"), std::string::npos);
    EXPECT_NE(once.find(R"("note": "new")"), std::string::npos);
    EXPECT_EQ(once.find(R"("first.scale")"), std::string::npos);
    clear();
    load(once);
    EXPECT_EQ(saved(), once);
}

TEST_F(NetworkRoundTrip, SavesObjectsThatComeFromNoFile)
{
    const RefPtr<VObject> made = Quorl::findCreator("Test/Inputs")->create("made", {});
    const std::string once = saved();
    made->remove();

    EXPECT_NE(once.find(R"("name": "made", "creator": "Test/Inputs", "values": {)"),
              std::string::npos)
        << once;
    EXPECT_NE(once.find(R"("int": 7)"), std::string::npos) << "nobody knows what is usual";
    load(once);
    ASSERT_TRUE(network) << reason;
    EXPECT_EQ(saved(), once);
}

TEST_F(NetworkRoundTrip, IsFoundAmongTheSaversOfTheState)
{
    NetworkSaver::enter();

    EXPECT_TRUE(Quorl::VSaveable::GlobalState().getSaverByExt(".json"));
}

TEST_F(NetworkRoundTrip, DoesNotSaveWhatNoFileCanTell)
{
    struct Listener final : Quorl::VActionNotifier
    {
        using VActionNotifier::warn;
        void warn(const WarnInfo& info) override { details = info.details; }
        std::string details;
    };
    const RefPtr<Listener> listener(new Listener);
    listener->activate();
    const RefPtr<VObject> made(new Sum("orphan", 0, {}));
    const RefPtr<NetworkSaver> saver(new NetworkSaver);

    EXPECT_FALSE(saver->Save((folder / "saved.json").string()));
    EXPECT_EQ(listener->details,
              "object \"orphan\": no creator made it, and so no file can tell it");
    EXPECT_EQ(folder.count(), 0U);
    made->remove();
}

TEST_F(NetworkRoundTrip, TellsOfAMissingCreator)
{
    EXPECT_EQ(complaint(withObject(R"("module": "old.zelm")", "Test/Gone")),
              ":1:33: object \"a\", key \"creator\": there is no creator \"Test/Gone\"; the module "
              "\"old.zelm\" had it when this was written");
    EXPECT_EQ(complaint(withObject(R"("x": 1)", "Test/Gone")),
              ":1:33: object \"a\", key \"creator\": there is no creator \"Test/Gone\"");
}

TEST_F(NetworkRoundTrip, TellsOfSlotsThatAreNotThere)
{
    EXPECT_EQ(complaint(withObject(R"("values": {"x": 1})")),
              ":1:86: object \"a\", key \"values.x\": there is no input \"x\"; it has left, note, "
              "right, scale");
    EXPECT_EQ(complaint(withObject(R"("inputs": {"left": "a.x"})")),
              ":1:89: object \"a\", key \"inputs.left\": \"a\" has no output \"x\"; it has sum");
    EXPECT_NE(complaint(withObject(R"("inputs": {"x": "a.sum"})")), "");
    EXPECT_NE(complaint(withObject(R"("inputs": {"left": {"object": "a", "input": "sum"}})")), "");
}

TEST_F(NetworkRoundTrip, TellsOfTypesThatDoNotFit)
{
    EXPECT_EQ(complaint(withObject(R"("values": {"left": "x"})")),
              ":1:89: object \"a\", key \"values.left\": a number is expected here, not \"x\"");
    EXPECT_NE(complaint(withObject(R"("inputs": {"note": "a.sum"})")).find("this takes"),
              std::string::npos);
}

TEST_F(NetworkRoundTrip, RefusesAValueOfAContextForAnInputOfAllContexts)
{
    EXPECT_NE(complaint(R"({"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}],
                            "contexts": [{"name": "c", "values": {"a": {"scale": 1}}}]})"),
              "");
}

TEST_F(NetworkRoundTrip, LeavesNothingOfANetworkThatCannotBeMade)
{
    const int before = Quorl::VManagedObject::size(typeid(VObject));
    EXPECT_NE(complaint(R"({"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"},
                            {"name": "b", "creator": "Test/Gone"}]})"),
              "");

    EXPECT_EQ(Quorl::VManagedObject::size(typeid(VObject)), before);
}

TEST_F(NetworkRoundTrip, MakesACircleAndSavesIt)
{
    load(withObject(R"("inputs": {"left": "a.sum"})"));

    ASSERT_TRUE(network) << reason;
    EXPECT_NE(saved().find(R"("left": "a.sum")"), std::string::npos);
}

TEST_F(NetworkRoundTrip, RefusesAFileWithoutObjects)
{
    EXPECT_EQ(complaint(R"({"zelm-network": 1})"), ": there are no objects in it");
}

TEST_F(NetworkRoundTrip, NamesObjectsAnewWhereTheRegistryHasTheName)
{
    load(kSums);
    const RefPtr<LoadedNetwork> first = network;
    network = RefPtr<LoadedNetwork>();
    load(kSums);

    EXPECT_EQ(main->getName(), "second1");
    EXPECT_EQ(network->object("second"), main);
    const std::string both = saved();
    EXPECT_NE(both.find(R"("left": "first1.sum")"), std::string::npos) << both;
    first->remove();
}

} // namespace
} // namespace Zelm
