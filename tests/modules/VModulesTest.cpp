#include <tests/modules/ModuleFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace Quorl
{
namespace
{

using QuorlTest::NoteItems;
using QuorlTest::outputOf;
using testing::ElementsAre;
using testing::IsEmpty;

/// The table of modules: how they come into it, are unloaded and loaded again.
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
