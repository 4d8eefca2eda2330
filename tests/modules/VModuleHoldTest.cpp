#include <quorl/modules/VCreatorCache.h>
#include <quorl/modules/VModuleHold.h>
#include <quorl/objects/VRequest.h>
#include <quorl/slots/VParameter.h>
#include <quorl/tasks/ThreadManagerValue.h>
#include <tests/modules/ModuleFolder.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace Quorl
{
namespace
{

using QuorlTest::NoteItems;
using QuorlTest::outputOf;

/// Who keeps a module loaded, and for how long.
struct VModuleHoldTest : QuorlTest::ModuleFolder
{
    NoteItems removed;
};

TEST_F(VModuleHoldTest, TheProcessEndsWithObjectsOfModulesInTheRegistry)
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

TEST_F(VModuleHoldTest, AnObjectKeepsItsModuleLoaded)
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

TEST_F(VModuleHoldTest, AnObjectWithoutSlotsKeepsItsModuleLoaded)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    const RefPtr<VObject> object = creator("Versioned/Quiet")->create("quiet survivor", {});
    const WeakPtr<VModule> module = VModules::find(path);
    EXPECT_EQ(object->getNumberOfInputs() + object->getNumberOfOutputs(), 0);
    UnloadVModule(path, removed);

    EXPECT_TRUE(module) << "held by the object";
    object->VManagedObject::remove();
}

TEST_F(VModuleHoldTest, AnObjectThatIsMadeWhileItsModuleIsLoadedKeepsItLoaded)
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

TEST_F(VModuleHoldTest, AParameterThatOthersShowKeepsItsModuleLoaded)
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

TEST_F(VModuleHoldTest, EachOutputOfAnObjectKeepsItsModuleLoaded)
{
    LoadVModule(add("version1", "versioned.zelm"));
    const RefPtr<VObject> object = creator("Versioned/Answering")->create("provider", {});
    for (const char* name : {"answer", "doubt"})
        EXPECT_TRUE(object->getOutput(name)->Parameter->findInterface(typeid(VModuleHold))) << name;
    object->VManagedObject::remove();
}

TEST_F(VModuleHoldTest, OfOthersParametersThoseThatRunTasksKeepAModuleLoaded)
{
    const RefPtr<VParameter> number = QuorlTest::makeParameter("number");
    const RefPtr<VParameter> threads(new VValueParameter<VThreadManager>(
        RefPtr<VValue<VThreadManager>>(new VValue<VThreadManager>), "threads"));
    const RefPtr<VObject> joined(new VObject("joined", 0, {}));
    joined->addParameter("number", 0, number, false);
    joined->addParameter("threads", 0, threads, false);
    LoadVModule(add("joining", "joining.zelm"));
    const RefPtr<VObject> object = creator("Joining/Joining")->create("object", {});

    EXPECT_EQ(object->getParameter("number"), number);
    EXPECT_FALSE(number->findInterface(typeid(VModuleHold)));
    EXPECT_EQ(object->getParameter("threads"), threads);
    EXPECT_TRUE(threads->findInterface(typeid(VModuleHold)));
    for (const RefPtr<VObject>& each : {joined, object}) each->VManagedObject::remove();
}

TEST_F(VModuleHoldTest, ItsCreatorsComeBackThoughAnObjectHasTheOldCode)
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

TEST_F(VModuleHoldTest, AnObjectKeepsTheModuleWhoseCreatorTookTheNameOfAnother)
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

TEST_F(VModuleHoldTest, AModuleIsLetGoOfByEachThatHasHeldIt)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    const WeakPtr<VModule> module = VModules::find(path);
    RefPtr<VModuleHold> first(new VModuleHold(module));
    RefPtr<VModuleHold> second(new VModuleHold(module));
    UnloadVModule(path, removed);

    first = RefPtr<VModuleHold>();
    VModuleHold::letGo();
    EXPECT_TRUE(module);
    second = RefPtr<VModuleHold>();
    EXPECT_TRUE(module) << "code of it may be what has let go";
    VModuleHold::letGo();
    EXPECT_FALSE(module);
}

TEST_F(VModuleHoldTest, AModuleIsNotLetGoOfByTheThreadThatHeldIt)
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

TEST_F(VModuleHoldTest, TypesThatModulesShareStayUsableWhenOneOfThemLeaves)
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

TEST_F(VModuleHoldTest, ADomainOfAModuleIsNamedWhenTheModuleHasLeft)
{
    const string path = add("shareda", "shareda.zelm");
    ASSERT_TRUE(LoadVModule(path));
    UnloadVModule(path, removed);
    outputOf([] { EXPECT_TRUE(SaveVCreatorMapTypes("cache")); });
    EXPECT_NE(read("cache").find("Item"), string::npos);
    outputOf([] { EXPECT_TRUE(LoadVCreatorMapTypes("cache")); });
}

TEST_F(VModuleHoldTest, AReloadedModuleMayTakeHoldOfOneThatWasToBeReloadedToo)
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

TEST_F(VModuleHoldTest, DoesNotReloadWhatAnObjectUses)
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

} // namespace
} // namespace Quorl
