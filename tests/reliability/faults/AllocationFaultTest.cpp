#include <tests/reliability/faults/FailingMemory.h>
#include <tests/reliability/faults/ProcessOutcome.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>
#include <zelm/network/LoadedNetwork.h>
#include <zelm/network/NetworkBuilder.h>
#include <zelm/network/NetworkDescription.h>
#include <zelm/network/NetworkReader.h>
#include <zelm/network/NetworkWriter.h>
#include <zelm/network/tests/TestObjects.h>

#include <quorl/kit/Network.h>
#include <quorl/modules/VCreatorCache.h>
#include <quorl/objects/VRequest.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <quorl/registry/VManagedObject.h>
#include <quorl/services/VUndoStack.h>
#include <quorl/tasks/VScheduler.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

/// Each allocation of a piece of work fails once. The work ends with an exception; nothing leaks,
/// what was saved is whole, and the same work is done when there is memory again.
namespace Zelm
{
namespace
{

using Quorl::ValuePool;
using Quorl::VObject;
using QuorlTest::bytesOf;
using QuorlTest::FailingMemory;
using QuorlTest::Outcome;
using QuorlTest::outcomeOf;
using QuorlTest::runWithFailure;
using QuorlTest::Work;

struct Silence final : Quorl::VUndoAction
{
    Silence() : VUndoAction("a change whose description is longer than a short text") {}
    bool undo() override { return true; }
};

/// Two sums, one behind the other, in a context.
struct Sums
{
    Sums() : context(new ValuePool("one"))
    {
        first = make("first");
        second = make("second");
        input(second, "left")->attachSource(output(first));
        setLeft("10");
    }

    static RefPtr<VObject> make(const std::string& name)
    {
        return Quorl::findCreator("Test/Sum")->create(name, Tolmen::Intercube());
    }

    static RefPtr<Quorl::VSlot> input(const RefPtr<VObject>& object, const std::string& name)
    {
        int level = 0;
        return object->getSlot(name, level);
    }

    static RefPtr<Quorl::VParameter> output(const RefPtr<VObject>& object)
    {
        return object->getOutput("sum")->Parameter;
    }

    void setLeft(const std::string& text) { Quorl::setText(*first, "left", text, context); }

    /// Evaluates the second one. \pre there is memory.
    double sum()
    {
        run();
        return std::stod(second->getOutput("sum")->getValueBase(context)->Text());
    }

    void run()
    {
        Quorl::VRequest request(context, false);
        second->init_request(request, 1.0);
    }

    void free()
    {
        const Quorl::VRequest request(context, false);
        for (const auto& object : {first, second}) object->removeRequest(request);
    }

    RefPtr<ValuePool> context;
    RefPtr<VObject> first;
    RefPtr<VObject> second;
};

/// Takes all objects out of the registry, as a host would that starts anew.
void clear()
{
    auto& objects = *Quorl::VCreators(typeid(VObject));
    while (!objects.empty()) objects.remove(objects.begin()->first);
    Quorl::VUndoStack::GlobalUndoStack().setSize(0);
    Quorl::VScheduler::execute(1.0);
}

/// A constructor that does not come to its end leaves a name, which the next object may have.
bool hasLiveObjects()
{
    const auto& objects = *Quorl::VCreators(typeid(VObject));
    return std::ranges::any_of(objects,
                               [&](const auto& entry) { return objects.liveCreator(entry.first); });
}

/// Does the work with one failure after the other, until there is nothing left to fail; and again
/// with memory that is gone from each place on.
/// \param check is called after each time, when there is memory again. It puts back what was.
void failEverywhere(const Work& work, const Work& check)
{
    constexpr long kNever = 1'000'000'000;
    for (int round = 0; round < 40; ++round) // makes all tables, and fills what keeps some dead
    {
        runWithFailure(work, kNever);
        check();
    }
    const long blocks = FailingMemory::blocks();
    for (const auto extent : {FailingMemory::Once, FailingMemory::FromThenOn})
        for (long number = 1; runWithFailure(work, number, extent); ++number)
        {
            check();
            EXPECT_LE(FailingMemory::blocks(), blocks) << "something has leaked";
            if (testing::Test::HasFailure())
                FAIL() << "when allocation " << number << " failed, in manner " << extent;
        }
    check();
}

TEST(AllocationFaults, LeaveNothingBehindWhereANetworkIsBuiltAndEvaluated)
{
    failEverywhere([] { Sums().run(); },
                   [] {
                       clear();
                       EXPECT_EQ(Sums().sum(), 14.0);
                       clear();
                   });
}

TEST(AllocationFaults, LetANetworkGoOnThatIsEdited)
{
    auto sums = std::make_unique<Sums>();
    const auto edit = [&] {
        sums->setLeft("20");
        Quorl::setText(*sums->first, "note", "a text that is longer than a short one",
                       sums->context);
        const RefPtr<VObject> third = Sums::make("third");
        const RefPtr<Quorl::VSlot> right = Sums::input(third, "right");
        right->attachSource(Sums::output(sums->second));
        third->schedule(1.0, sums->context);
        Quorl::VUndoStack stack;
        stack.AddAction(new Silence);
        Quorl::VScheduler::execute(1.0);
        right->attachSource(Sums::output(sums->first));
        third->VManagedObject::remove();
        stack.undo();
    };
    failEverywhere(edit, [&] {
        sums->setLeft("30");
        // Whom the exception has passed on its walk is occupied: another evaluation frees nobody.
        sums->free();
        EXPECT_EQ(sums->sum(), 34.0);
        sums.reset();
        clear();
        sums = std::make_unique<Sums>();
        EXPECT_EQ(sums->sum(), 14.0);
    });
    sums.reset();
    clear();
}

TEST(AllocationFaults, LeaveTheCacheOfCreatorsWholeOrEmpty)
{
    const QuorlTest::TemporaryFolder folder;
    const std::string saved = (folder / "creators.cache").string();
    QuorlTest::outputOf([&] { Quorl::SaveVCreatorMapTypes(saved); });
    const std::string whole = bytesOf(saved);
    failEverywhere(
        [&] {
            Quorl::SaveVCreatorMapTypes(saved);
            Quorl::LoadVCreatorMapTypes(saved);
        },
        [&] {
            const std::string bytes = bytesOf(saved);
            EXPECT_TRUE(bytes == whole || bytes.empty()) << bytes.size();
        });
}

constexpr const char* kNetwork = R"({
  "zelm-network": 1,
  "objects": [
    {"name": "first", "creator": "Test/Sum", "values": {"scale": 3.0}},
    {"name": "second", "creator": "Test/Sum", "inputs": {"left": "first.sum"}}
  ],
  "contexts": [
    {"name": "one", "values": {"first": {"left": 10.0}}}
  ],
  "request": ["second"]
}
)";

TEST(AllocationFaults, LeaveNothingBehindWhereANetworkIsBuiltFromAFile)
{
    const NetworkDocument document = readNetwork("a.json", kNetwork);
    failEverywhere([&] { buildNetwork(document, Tolmen::Intercube())->remove(); },
                   [] {
                       EXPECT_FALSE(hasLiveObjects());
                       clear();
                   });
}

TEST(AllocationFaults, LeaveASavedNetworkWhole)
{
    const QuorlTest::TemporaryFolder folder;
    const std::string file = (folder / "network.json").string();
    const std::string saved = (folder / "saved.json").string();
    QuorlTest::writeBytes(file, kNetwork);
    const auto loadAndSave = [&] {
        const auto network = buildNetwork(readNetworkFile(file), Tolmen::Intercube());
        writeNetworkFile(describeNetwork(), saved);
    };
    loadAndSave();
    clear();
    const std::string fresh = bytesOf(saved);
    ASSERT_NE(fresh, "");

    auto outcome = Outcome::Failed;
    for (long number = 1; outcome != Outcome::Done; ++number)
    {
        QuorlTest::writeBytes(saved, "former");
        outcome = outcomeOf(loadAndSave, [] { return true; }, number);
        const std::string text = bytesOf(saved);
        ASSERT_NE(outcome, Outcome::Broken) << number;
        ASSERT_TRUE(text == fresh || text == "former") << number;
        ASSERT_TRUE(outcome == Outcome::Ended || folder.count() == 2) << number;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            if (entry.path() != file && entry.path() != saved)
                std::filesystem::remove_all(entry.path());
    }
    EXPECT_EQ(bytesOf(saved), fresh);
}

} // namespace
} // namespace Zelm
