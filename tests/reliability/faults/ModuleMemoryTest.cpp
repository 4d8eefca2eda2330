#include <tests/reliability/faults/ProcessOutcome.h>

#include <quorl/foundation/Intercube.h>
#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModuleHold.h>
#include <quorl/modules/VModules.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreatorBase.h>

#include <gtest/gtest.h>

#include <string>

/// Memory runs out while a module comes, works or goes. No code is left in use that has gone, and
/// the module can be loaded, used and unloaded when there is memory again.
namespace Quorl
{
namespace
{

using QuorlTest::FailingMemory;
using QuorlTest::Outcome;
using QuorlTest::outcomeOf;

bool load(const std::string& module)
{
    return LoadVModule(module);
}

bool unload(const std::string& module)
{
    LeaveItems remover;
    return UnloadVModule(module, remover);
}

bool reload(const std::string& module)
{
    LeaveItems remover;
    return ReloadVModule(module, remover);
}

/// Has each creator make an object, which its code has to be there for.
bool useCreators(const std::string& /*module*/ = "")
{
    VManagedObject::iterate(
        typeid(VInputCreatorBase),
        [](int /*priority*/, const RefPtr<VManagedObject>& item, const string& /*name*/) {
            const RefPtr<VCreatorBase> creator = item;
            if (!creator) return true;
            const RefPtr<VObject> object = creator->create("made", Tolmen::Intercube());
            if (object) object->VManagedObject::remove();
            return true;
        });
    return true;
}

int liveObjects()
{
    return VManagedObject::iterate(
        typeid(VObject), [](int, const RefPtr<VManagedObject>&, const string&) { return true; });
}

/// Works with whatever there is, at each time.
bool isUsable(const std::string& module, bool isRefused)
{
    // What the host makes from now on would be taken away with a module.
    if (!VManagedObject::CurrentLoadModule.empty()) return false;
    useCreators();
    if (!VModules::find(module) && load(module) == isRefused) return false;
    useCreators();
    if (unload(module) == isRefused) return false;
    useCreators();
    return liveObjects() == 0;
}

bool isUsable(const std::string& module)
{
    return isUsable(module, false);
}

bool refuses(const std::string& module)
{
    return isUsable(module, true);
}

/// \param mayEnd whether the process may, as it does where static initialisers of a module run out
/// of memory, as those of a program do.
/// \return how often it failed.
int failEverywhere(const std::string& module, bool (*work)(const std::string&), bool mayEnd,
                   bool (*isWhole)(const std::string&) = isUsable)
{
    int failures = 0;
    for (const auto extent : {FailingMemory::Once, FailingMemory::FromThenOn})
    {
        auto outcome = Outcome::Failed;
        for (long number = 1; outcome != Outcome::Done && !testing::Test::HasFailure(); ++number)
        {
            outcome =
                outcomeOf([&] { work(module); }, [&] { return isWhole(module); }, number, extent);
            EXPECT_NE(outcome, Outcome::Broken) << number;
            EXPECT_TRUE(mayEnd || outcome != Outcome::Ended) << number;
            if (outcome == Outcome::Failed) ++failures;
        }
    }
    return failures;
}

struct ModuleMemory : testing::TestWithParam<const char*>
{
    const std::string module = GetParam();
};

TEST_P(ModuleMemory, MayRunOutWhereOneIsLoaded)
{
    EXPECT_GT(failEverywhere(module, load, true), 20);
}

TEST_P(ModuleMemory, MayRunOutWhereOneMakesItsObjects)
{
    ASSERT_TRUE(load(module));
    failEverywhere(module, useCreators, false);
    EXPECT_TRUE(unload(module));
}

TEST_P(ModuleMemory, MayRunOutWhereOneIsUnloaded)
{
    ASSERT_TRUE(load(module));
    failEverywhere(module, unload, false);
    EXPECT_TRUE(unload(module));
}

TEST_P(ModuleMemory, MayRunOutWhereOneIsReloaded)
{
    ASSERT_TRUE(load(module));
    EXPECT_GT(failEverywhere(module, reload, true), 20);
    EXPECT_TRUE(unload(module));
}

TEST_P(ModuleMemory, MayBeGoneWhereTheLastHoldOfOneEnds)
{
    ASSERT_TRUE(load(module));
    const WeakPtr<VModule> watched = VModules::find(module);
    RefPtr<VModuleHold> hold(new VModuleHold(watched));
    RefPtr<VModuleHold> another(new VModuleHold(watched));
    EXPECT_TRUE(unload(module));
    {
        const FailingMemory memory(1, FailingMemory::FromThenOn);
        hold = another = RefPtr<VModuleHold>();
        VModuleHold::letGo();
    }
    EXPECT_FALSE(watched);
}

INSTANTIATE_TEST_SUITE_P(Of, ModuleMemory,
                         testing::Values(GOOD_MODULE, MODULE_WITH_A_CREATOR, STAYING_MODULE),
                         [](const auto& test) { return "Module" + std::to_string(test.index); });

TEST(RefusingModuleMemory, MayRunOutWhereOneIsLoaded)
{
    EXPECT_GT(failEverywhere(REFUSING_MODULE, load, true, refuses), 20);
}

} // namespace
} // namespace Quorl
