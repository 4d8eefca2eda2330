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

/// Memory runs out while a module comes or goes. No code is left in use that has gone, and the
/// module can be loaded, used and unloaded when there is memory again.
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

/// Has each creator make an object, which its code has to be there for.
void useCreators()
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
}

bool isUsable(const std::string& module)
{
    // What the host makes from now on would be taken away with a module.
    if (!VManagedObject::CurrentLoadModule.empty()) return false;
    useCreators();
    if (!VModules::find(module) && !load(module)) return false;
    useCreators();
    if (!unload(module)) return false;
    useCreators();
    return true;
}

struct ModuleMemory : testing::TestWithParam<const char*>
{
    const std::string module = GetParam();

    /// \return how often it failed.
    int failEverywhere(bool (*work)(const std::string&), FailingMemory::Extent extent,
                       bool mayEnd) const
    {
        auto outcome = Outcome::Failed;
        int failures = 0;
        for (long number = 1; outcome != Outcome::Done && !HasFailure(); ++number)
        {
            outcome =
                outcomeOf([&] { work(module); }, [&] { return isUsable(module); }, number, extent);
            EXPECT_NE(outcome, Outcome::Broken) << number;
            EXPECT_TRUE(mayEnd || outcome != Outcome::Ended) << number;
            if (outcome == Outcome::Failed) ++failures;
        }
        return failures;
    }
};

/// Static initialisers of a module that run out of memory end the process, as those of a program
/// do.
TEST_P(ModuleMemory, MayRunOutWhereOneIsLoaded)
{
    EXPECT_GT(failEverywhere(load, FailingMemory::Once, true), 10);
    EXPECT_GT(failEverywhere(load, FailingMemory::FromThenOn, true), 10);
}

TEST_P(ModuleMemory, MayRunOutWhereOneIsUnloaded)
{
    ASSERT_TRUE(load(module));
    failEverywhere(unload, FailingMemory::Once, false);
    failEverywhere(unload, FailingMemory::FromThenOn, false);
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
                         testing::Values(GOOD_MODULE, MODULE_WITHOUT_STATICS, STAYING_MODULE),
                         [](const auto& test) { return "Module" + std::to_string(test.index); });

} // namespace
} // namespace Quorl
