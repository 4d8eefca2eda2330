#include <quorl/modules/VCreatorCache.h>
#include <quorl/modules/VModuleHold.h>
#include <quorl/objects/VRequest.h>
#include <tests/modules/ModuleFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace Quorl
{
namespace
{

using QuorlTest::NoteItems;
using QuorlTest::outputOf;
using testing::ElementsAre;
using testing::IsEmpty;

struct VModulesTest : QuorlTest::ModuleFolder
{
    NoteItems removed;
};

TEST_F(VModulesTest, UnloadHandsTheCreatorsOverAndKeepsTheirEntries)
{
    const string path = add("version1", "versioned.zelm");
    const string otherPath = add("other", "other.zelm");
    LoadVModule(path);
    LoadVModule(otherPath);
    const WeakPtr<VCreatorBase> gone = creator("Versioned/Answering");
    const int size = VManagedObject::size(typeid(VInputCreatorBase));

    EXPECT_TRUE(UnloadVModule(path, removed));

    EXPECT_THAT(removed.names, ElementsAre("Versioned/Answering", "Versioned/Quiet"));
    EXPECT_FALSE(gone) << "it was a static object of the module";
    EXPECT_EQ(VManagedObject::size(typeid(VInputCreatorBase)), size);
    EXPECT_FALSE(VModules::isLoadable(path)) << "known all the same";
    EXPECT_FALSE(VModules::find(path));
    EXPECT_EQ(answerOf("Other/Answering"), "7") << "untouched";
}

TEST_F(VModulesTest, UnloadBearsThatEntriesAreRemovedMeanwhile)
{
    struct RemoveEntries final : VManagedObject::VRemoveItem
    {
        void removeItem(const string&, const RefPtr<VManagedObject>&) override
        {
            for (const char* name : {"Versioned/Answering", "Versioned/Quiet"})
                VManagedObject::remove(typeid(VInputCreatorBase), name);
        }
    } remover;
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);

    EXPECT_TRUE(UnloadVModule(path, remover));

    outputOf([&] { EXPECT_FALSE(creator("Versioned/Answering")); });
    EXPECT_FALSE(VModules::find(path));
}

TEST_F(VModulesTest, UnloadAnswersWhetherTheModuleWasEverKnown)
{
    EXPECT_FALSE(UnloadVModule("unknown.zelm", removed));
    EXPECT_FALSE(ReloadVModule("unknown.zelm", removed));
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    EXPECT_TRUE(UnloadVModule(path, removed));
    EXPECT_TRUE(UnloadVModule(path, removed));
}

TEST_F(VModulesTest, ReloadRunsTheNewCode)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    EXPECT_EQ(answerOf("Versioned/Answering"), "1");
    add("version2", path);

    EXPECT_TRUE(ReloadVModule(path, removed));

    EXPECT_EQ(answerOf("Versioned/Answering"), "2");
    EXPECT_EQ(creator("Versioned/Answering")->getLoadModule(), path);
    EXPECT_FALSE(creator("Versioned/Answering1")) << "the old entry was taken over";
}

TEST_F(VModulesTest, ReloadsOftenWithoutLeavingAnythingBehind)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    for (int round = 0; round < 50; ++round)
    {
        add(round % 2 == 0 ? "version2" : "version1", path);
        ASSERT_TRUE(ReloadVModule(path, removed));
        ASSERT_EQ(answerOf("Versioned/Answering"), round % 2 == 0 ? "2" : "1") << round;
    }
}

TEST_F(VModulesTest, ReloadRunsTheNewCodeOfAModuleThatNeverLeaves)
{
    const string path = add("resident1", "versioned.zelm");
    LoadVModule(path);
    EXPECT_EQ(answerOf("Versioned/Answering"), "3");
    for (const char* answer : {"4", "3", "4"})
    {
        add(answer == string("4") ? "resident2" : "resident1", path);
        ASSERT_TRUE(ReloadVModule(path, removed));
        EXPECT_EQ(answerOf("Versioned/Answering"), answer);
        EXPECT_EQ(creator("Versioned/Answering")->getLoadModule(), path);
    }
}

TEST_F(VModulesTest, TheProcessEndsWithObjectsOfModulesInTheRegistry)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            LoadVModule(add("version1", "versioned.zelm"));
            creator("Versioned/Answering")->create("left", {});
            const RefPtr<ValuePool> pool(new ValuePool("left"));
            creator("Versioned/Quiet")->create("left as well", {})->schedule(1.0, pool);
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(VModulesTest, ReloadAnswersFalseIfTheFileIsGone)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    std::filesystem::remove(path);

    outputOf([&] { EXPECT_FALSE(ReloadVModule(path, removed)); });
    EXPECT_FALSE(VModules::find(path));
}

TEST_F(VModulesTest, AnUnloadedModuleComesBackWhenItsCreatorIsSought)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    UnloadVModule(path, removed);
    bool isFound = false;

    EXPECT_EQ(outputOf([&] { isFound = static_cast<bool>(creator("Versioned/Quiet")); }),
              "VCreatorBaseInfo: No Creator, need to load [versioned.zelm]\n");
    EXPECT_TRUE(isFound);
    EXPECT_EQ(outputOf([&] { creator("Versioned/Answering"); }), "") << "it came along";
}

TEST_F(VModulesTest, AnObjectKeepsItsModuleLoaded)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    RefPtr<VObject> object = creator("Versioned/Answering")->create("survivor", {});
    const WeakPtr<VModule> module = VModules::find(path);
    const RefPtr<ValuePool> pool(new ValuePool);
    EXPECT_TRUE(UnloadVModule(path, removed));

    EXPECT_TRUE(module) << "held by the object";
    VRequest request(pool, false);
    EXPECT_TRUE(object->init_request(request, 1.0)) << "its code is there";
    object->VManagedObject::remove();
    object = RefPtr<VObject>();
    EXPECT_TRUE(module) << "until modules are next loaded or unloaded";
    UnloadVModule(path, removed);
    EXPECT_FALSE(module);
    // The pool outlives the type of the value that it had.
}

TEST_F(VModulesTest, AnObjectThatIsMadeWhileItsModuleIsLoadedKeepsItLoaded)
{
    const string path = add("early", "early.zelm");
    ASSERT_TRUE(LoadVModule(path));
    RefPtr<VObject> object = VManagedObject::find(typeid(VObject), "early");
    const WeakPtr<VModule> module = VModules::find(path);
    UnloadVModule(path, removed);

    ASSERT_TRUE(module) << "held by the object";
    const RefPtr<ValuePool> pool(new ValuePool);
    VRequest request(pool, false);
    EXPECT_TRUE(object->init_request(request, 1.0)) << "its code is there";
    EXPECT_EQ(object->getOutput("answer")->getValueBase(pool)->Text(), "3");
    object = RefPtr<VObject>();
    EXPECT_TRUE(module) << "until modules are next loaded or unloaded";
    VModuleHold::letGo();
    EXPECT_FALSE(module);
}

TEST_F(VModulesTest, AParameterThatOthersShowKeepsItsModuleLoaded)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    const RefPtr<ValuePool> pool(new ValuePool);
    const WeakPtr<VModule> module = VModules::find(path);
    const RefPtr<VObject> other(new VObject("other", 0, {}));
    {
        const RefPtr<VObject> object = creator("Versioned/Answering")->create("provider", {});
        VRequest request(pool, false);
        object->init_request(request, 1.0);
        other->addParameter("shown", 0, object->getOutput("answer")->Parameter, false);
        object->VManagedObject::remove();
    }
    UnloadVModule(path, removed);
    int level = 0;
    const RefPtr<VSlot> slot = other->getSlot("shown", level);
    EXPECT_EQ(slot->getValueBase(pool)->Text(), "1") << "the object has ended, its output has not";

    EXPECT_EQ(other->detachSlot(slot), VSlotContainer::AttachOk);
    EXPECT_EQ(slot->getValueBase(pool)->Text(), "1") << "nor has a copy of that";
    UnloadVModule(path, removed);
    EXPECT_TRUE(module);

    other->removeParameter("shown");
    UnloadVModule(path, removed);
    EXPECT_TRUE(module) << "held by the slot that this test has";
    other->VManagedObject::remove();
}

TEST_F(VModulesTest, ItsCreatorsComeBackThoughAnObjectHasTheOldCode)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    RefPtr<VObject> object = creator("Versioned/Answering")->create("user", {});
    const WeakPtr<VModule> former = VModules::find(path);
    add("version2", path);

    EXPECT_TRUE(ReloadVModule(path, removed));

    EXPECT_EQ(answerOf("Versioned/Answering"), "2");
    EXPECT_EQ(creator("Versioned/Answering")->getLoadModule(), path);
    const RefPtr<ValuePool> pool(new ValuePool);
    VRequest request(pool, false);
    object->init_request(request, 1.0);
    EXPECT_EQ(object->getOutput("answer")->getValueBase(pool)->Text(), "1") << "its own code";
    EXPECT_TRUE(former);
    object->VManagedObject::remove();
    object = RefPtr<VObject>();
    UnloadVModule(path, removed);
    EXPECT_FALSE(former);
    LoadVModule(path);
    EXPECT_EQ(answerOf("Versioned/Answering"), "2");
}

TEST_F(VModulesTest, LoadsAModuleThatNeverLeavesOnceOnlyUntilItIsUnloaded)
{
    const string path = add("resident1", "versioned.zelm");
    LoadVModule(path);
    ReloadVModule(path, removed);
    EXPECT_TRUE(LoadVModule(path));
    EXPECT_EQ(answerOf("Versioned/Answering"), "3");
    EXPECT_FALSE(creator("Versioned/Answering1")) << "its initialisers did not run again";
}

TEST_F(VModulesTest, AModuleThatNeverLeavesCannotBeLoadedAgainWithoutItsFile)
{
    const string path = add("resident1", "versioned.zelm");
    LoadVModule(path);
    UnloadVModule(path, removed);
    std::filesystem::remove(path);
    outputOf([&] { EXPECT_FALSE(LoadVModule(path)); });
    add("resident2", path);
    EXPECT_TRUE(LoadVModule(path));
    EXPECT_EQ(answerOf("Versioned/Answering"), "4");
}

TEST_F(VModulesTest, AFileIsLoadedOnceWhateverItsPathIsCalled)
{
    const string path = add("version1", "here/versioned.zelm");
    const string other = "here/./versioned.zelm";
    LoadVModule(path);
    LoadVModule(other);
    EXPECT_FALSE(creator("Versioned/Answering1"));
    UnloadVModule(other, removed);
    EXPECT_TRUE(LoadVModule(other));
    EXPECT_FALSE(creator("Versioned/Answering1")) << "it was not taken for one that never leaves";
    EXPECT_EQ(answerOf("Versioned/Answering"), "1");
}

TEST_F(VModulesTest, ReloadBringsTheCreatorsBackThoughAnotherPathHasTheFile)
{
    const string path = add("version1", "here/versioned.zelm");
    LoadVModule(path);
    LoadVModule("here/./versioned.zelm");

    for (int time = 0; time < 2; ++time)
    {
        EXPECT_TRUE(ReloadVModule(path, removed));
        EXPECT_EQ(answerOf("Versioned/Answering"), "1");
    }
    EXPECT_FALSE(creator("Versioned/Answering1"));
}

TEST_F(VModulesTest, AnObjectKeepsTheModuleWhoseCreatorTookTheNameOfAnother)
{
    const string former = add("version1", "former.zelm");
    LoadVModule(former);
    UnloadVModule(former, removed);
    const string path = add("version2", "versioned.zelm");
    LoadVModule(path);
    EXPECT_EQ(creator("Versioned/Answering")->getLoadModule(), former) << "as it was registered";
    RefPtr<VObject> object = creator("Versioned/Answering")->create("survivor", {});
    const WeakPtr<VModule> module = VModules::find(path);
    UnloadVModule(path, removed);

    EXPECT_TRUE(module) << "held by the object";
    VRequest request(RefPtr<ValuePool>(new ValuePool), false);
    EXPECT_TRUE(object->init_request(request, 1.0)) << "its code is there";
    object->VManagedObject::remove();
    object = RefPtr<VObject>();
    UnloadVModule(path, removed);
    EXPECT_FALSE(module);
}

TEST_F(VModulesTest, AModuleIsNotLetGoOfByTheThreadThatHeldIt)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    RefPtr<VModuleHold> hold(new VModuleHold(VModules::find(path)));
    const WeakPtr<VModule> module = VModules::find(path);
    UnloadVModule(path, removed);
    std::thread([&] { hold = RefPtr<VModuleHold>(); }).join();
    EXPECT_TRUE(module);
    VModuleHold::letGo();
    EXPECT_FALSE(module);
}

TEST_F(VModulesTest, TypesThatModulesShareStayUsableWhenOneOfThemLeaves)
{
    const string path = add("shareda", "shareda.zelm");
    const string later = add("sharedb", "sharedb.zelm");
    ASSERT_TRUE(LoadVModule(path));
    ASSERT_TRUE(LoadVModule(later));
    const RefPtr<VObject> object = creator("Shared/shareda")->create("parent", {});
    EXPECT_TRUE(UnloadVModule(later, removed));

    EXPECT_EQ(creator("Shared/shareda")->accept(object).size(), 1U);
    object->VManagedObject::remove();
    EXPECT_TRUE(UnloadVModule(path, removed));
}

TEST_F(VModulesTest, ADomainOfAModuleIsNamedWhenTheModuleHasLeft)
{
    const string path = add("shareda", "shareda.zelm");
    ASSERT_TRUE(LoadVModule(path));
    UnloadVModule(path, removed);
    outputOf([] { EXPECT_TRUE(SaveVCreatorMapTypes("cache")); });
    EXPECT_NE(read("cache").find("Item"), string::npos);
    outputOf([] { EXPECT_TRUE(LoadVCreatorMapTypes("cache")); });
}

TEST_F(VModulesTest, AReloadedModuleMayTakeHoldOfOneThatWasToBeReloadedToo)
{
    const string grasping = add("grasping", "grasping.zelm");
    LoadVModule(grasping);
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    for (const string& each : {grasping, path})
        std::filesystem::last_write_time(each, std::filesystem::last_write_time(each) +
                                                   std::chrono::hours(1));
    EXPECT_EQ(VModules::countReloadablePlugins(), 2);
    EXPECT_EQ(VModules::reloadAllNew(), 1);
    EXPECT_EQ(VModules::countReloadablePlugins(), 1) << "which is held";
}

TEST_F(VModulesTest, NoticesANewerFile)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    EXPECT_FALSE(VModules::find(path)->haveNewerPlugin());
    EXPECT_EQ(VModules::countReloadablePlugins(), 0);
    const auto present = std::filesystem::last_write_time(path);

    std::filesystem::last_write_time(path, present - std::chrono::hours(1));
    EXPECT_FALSE(VModules::find(path)->haveNewerPlugin()) << "older";
    std::filesystem::last_write_time(path, present + std::chrono::nanoseconds(1000));
    EXPECT_TRUE(VModules::find(path)->haveNewerPlugin());
    EXPECT_EQ(VModules::countReloadablePlugins(), 1);
    std::filesystem::remove(path);
    EXPECT_FALSE(VModules::find(path)->haveNewerPlugin()) << "gone";
}

TEST_F(VModulesTest, ReloadsWhatIsNewerAndHeldByNobodyElse)
{
    const string path = add("version1", "versioned.zelm");
    const string same = add("other", "other.zelm");
    LoadVModule(path);
    LoadVModule(same);
    EXPECT_EQ(VModules::reloadAllNew(), 0);
    const auto present = std::filesystem::last_write_time(path);
    add("version2", path);
    std::filesystem::last_write_time(path, present + std::chrono::hours(1));
    {
        const RefPtr<VModule> holder = VModules::find(path);
        EXPECT_EQ(VModules::reloadAllNew(), 0);
        EXPECT_EQ(answerOf("Versioned/Answering"), "1");
    }
    EXPECT_EQ(VModules::reloadAllNew(), 1);
    EXPECT_EQ(answerOf("Versioned/Answering"), "2");
    EXPECT_EQ(VModules::reloadAllNew(), 0) << "it is not newer any more";
}

TEST_F(VModulesTest, DoesNotCountWhatIsKnownWithoutAFileOrCannotBeReloaded)
{
    EXPECT_TRUE(VModules::enableCache("cached.zelm"));
    EXPECT_EQ(VModules::countReloadablePlugins(), 0);
    EXPECT_EQ(VModules::reloadAllNew(), 0);
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    const auto present = std::filesystem::last_write_time(path);
    add("wrongword", path);
    std::filesystem::last_write_time(path, present + std::chrono::hours(1));

    EXPECT_EQ(VModules::countReloadablePlugins(), 1);
    outputOf([&] { EXPECT_EQ(VModules::reloadAllNew(), 0); });
    EXPECT_FALSE(VModules::find(path));
}

TEST_F(VModulesTest, AFileThatIsRefusedHasNoFunctionsAndNothingToLeaveBehind)
{
    const RefPtr<VModule> module(new VModule(add("wrongword", "wrongword.zelm")));
    module->leaveBehind();

    EXPECT_FALSE(module->isValid());
    EXPECT_EQ(module->getFunction("main"), nullptr);
    EXPECT_THAT(module->errorText, testing::StartsWith("Incompatible Plugin!"));
}

TEST_F(VModulesTest, DoesNotReloadWhatAnObjectUses)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    RefPtr<VObject> object = creator("Versioned/Answering")->create("user", {});
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) +
                                               std::chrono::hours(1));
    EXPECT_EQ(VModules::countReloadablePlugins(), 1);
    EXPECT_EQ(VModules::reloadAllNew(), 0);
    object->VManagedObject::remove();
    object = RefPtr<VObject>();
    EXPECT_EQ(VModules::reloadAllNew(), 1);
}

struct Visit final : VModules::Iterator
{
    bool apply(const string& path, const string& modulePath, const string& /*sourceInfo*/,
               const string& errorText) override
    {
        lines.push_back(path + "|" + modulePath + "|" + errorText);
        return lines.size() < most;
    }
    std::vector<string> lines;
    std::size_t most = 100;
};

TEST_F(VModulesTest, VisitsNothingThatTheKernelHasLoaded)
{
    LoadVModule(add("version1", "versioned.zelm"));
    Visit visit;
    EXPECT_EQ(VModules::iterate(visit), 0);
    EXPECT_THAT(visit.lines, IsEmpty());
}

TEST_F(VModulesTest, VisitsWhatSomebodyMarkedAsLoadable)
{
    LoadVModule(add("version1", "versioned.zelm"));
    LoadVModule(add("other", "other.zelm"));
    auto& table = *VGlobals::theGlobals().modules;
    for (auto& [path, info] : table) info.loadable = true;
    table["cached.zelm"].loadable = true;
    Visit all;
    EXPECT_EQ(VModules::iterate(all), 2);
    EXPECT_THAT(all.lines, ElementsAre("other.zelm|other.zelm|No error on module other.zelm",
                                       "versioned.zelm|versioned.zelm|No error on module "
                                       "versioned.zelm"));
    Visit one;
    one.most = 1;
    EXPECT_EQ(VModules::iterate(one), 0);
}

TEST_F(VModulesTest, EnableCacheMakesAModuleKnown)
{
    EXPECT_TRUE(VModules::isLoadable("cached.zelm"));
    EXPECT_TRUE(VModules::enableCache("cached.zelm"));
    EXPECT_FALSE(VModules::isLoadable("cached.zelm"));
    EXPECT_TRUE(VModules::enableCache("cached.zelm"));
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    EXPECT_FALSE(VModules::enableCache(path));
    UnloadVModule(path, removed);
    EXPECT_TRUE(VModules::enableCache(path));
}

TEST_F(VModulesTest, TheDialogIsPutBack)
{
    const VModules::ErrorDialog mine = [](const string&, const string&) { return 5; };
    const VModules::ErrorDialog before = VModules::setErrorDialog(mine);
    EXPECT_EQ(VModules::setErrorDialog(before), mine);
}

} // namespace
} // namespace Quorl
