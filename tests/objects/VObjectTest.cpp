#include <quorl/objects/VObject.h>

#include <quorl/registry/VCreationPreferences.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/services/VScriptFunctor.h>
#include <quorl/services/VScriptTypedValue.h>
#include <quorl/services/VScriptValue.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::outputOf;

/// Hears of deletions.
struct Deletions final : VActionNotifier
{
    void deleteVObject(const string& name) override
    {
        names.push_back(name);
        wasRegistered.push_back(static_cast<bool>(VManagedObject::find(typeid(VObject), name)));
    }
    std::vector<string> names;
    std::vector<bool> wasRegistered;
};

TEST(VObject, IsInTheRegistryBeforeItsConstructorEnds)
{
    const RefPtr<VCreationPreferences> preferences(new VCreationPreferences("word"));
    auto* const object = new VObject("registered", 5, preferences);

    EXPECT_EQ(VManagedObject::find(typeid(VObject), "registered"), WeakPtr<VObject>(object));
    EXPECT_EQ(object->priority, 5);
    EXPECT_EQ(object->CreationPreferences, preferences);
    EXPECT_FALSE(object->RequestProcessing);
    EXPECT_FALSE(object->Creator);
    EXPECT_EQ(object->Executor.Level, 0);
    object->VManagedObject::remove();
}

TEST(VObject, LivesOnTheRegistryAloneUntilItIsRemoved)
{
    auto* const object = new VObject("alone", 0, {});
    const WeakPtr<VObject> observer(object);
    EXPECT_EQ(observer.referer->strong, 1);

    object->remove();

    EXPECT_FALSE(observer);
}

TEST(VObject, MayGetAnotherNameThanItWants)
{
    QuorlTest::Network network;
    const auto first = network.node("twin");
    const auto second = network.node("twin");

    EXPECT_EQ(first->getName(), "twin");
    EXPECT_EQ(second->getName(), "twin1");
}

TEST(VObject, TellsItsRemovalWhileItIsStillThere)
{
    const RefPtr<Deletions> deletions(new Deletions);
    ASSERT_TRUE(deletions->activate());
    const RefPtr<VObject> object(new VObject("leaving", 0, {}));

    object->remove();

    EXPECT_EQ(deletions->names, std::vector<string>{"leaving"});
    EXPECT_EQ(deletions->wasRegistered, std::vector<bool>{true});
    EXPECT_TRUE(object) << "lives on until its last owner goes";
    EXPECT_FALSE(VManagedObject::find(typeid(VObject), "leaving"));
}

constexpr const char* kWarning =
    "**WARNING** VObject::remove(const string&s): for some yet unknown "
    "reason this function is not working.\n";

TEST(VObject, WarnsAtEachRemovalByNameAndTellsOnlySuccess)
{
    const RefPtr<Deletions> deletions(new Deletions);
    ASSERT_TRUE(deletions->activate());
    const RefPtr<VObject> object(new VObject("by name", 0, {}));

    EXPECT_EQ(outputOf([] { EXPECT_TRUE(VObject::remove("by name")); }), kWarning);
    EXPECT_EQ(deletions->names, std::vector<string>{"by name"});
    EXPECT_EQ(outputOf([] { EXPECT_FALSE(VObject::remove("by name")); }),
              string(kWarning) + "Could not find by name...\n");
    EXPECT_EQ(deletions->names.size(), 1U);
}

TEST(VObject, MayBeRemovedByItsOwnName)
{
    const RefPtr<Deletions> deletions(new Deletions);
    ASSERT_TRUE(deletions->activate());
    const WeakPtr<VObject> object(new VObject("a name that is long enough to be elsewhere", 0, {}));
    outputOf([&] { EXPECT_TRUE(VObject::remove(object->getName())); });
    EXPECT_EQ(deletions->names, std::vector<string>{"a name that is long enough to be elsewhere"});
    EXPECT_FALSE(object);
}

TEST(VObject, SurvivesASubscriberThatRemovesItAsWell)
{
    struct Removing final : VActionNotifier
    {
        void deleteVObject(const string& name) override
        {
            VManagedObject::remove(typeid(VObject), name);
        }
    };
    const RefPtr<Removing> removing(new Removing);
    ASSERT_TRUE(removing->activate());
    const WeakPtr<VObject> object(new VObject("twice", 0, {}));
    EXPECT_EQ(outputOf([&] { object->remove(); }), "Could not find twice...\n");
    EXPECT_FALSE(object);
}

TEST(VObject, UsesTheRegistryInItsDestructorAlsoAtTheEndOfTheProcess)
{
    struct Composite final : VObject
    {
        explicit Composite(const string& wantedName)
            : VObject(wantedName, 0, {}), part(new VObject(wantedName + " part", 0, {}))
        {
        }
        ~Composite() override
        {
            VManagedObject::remove(typeid(VObject), part->getName());
            VManagedObject::find(typeid(VObject), "a");
        }
        const WeakPtr<VObject> part;
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            for (const char* name : {"a", "m", "z"}) new Composite(name);
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST(VObject, NamesItsParametersAfterItself)
{
    QuorlTest::Network network;
    const auto object = network.node("owner");
    const auto parameter = QuorlTest::makeParameter("width");
    EXPECT_EQ(parameter->Name(), "width");
    parameter->setCreator(object.rawptr());

    EXPECT_EQ(parameter->Name(), "owner.width");
    EXPECT_EQ(object->CreateParameterName("x"), "owner.x");
}

TEST(VObject, HasOneNumberAndOneBlockForAllItsBases)
{
    QuorlTest::Network network;
    const auto object = network.node("one");
    const RefPtr<VManagedObject> managed = object;
    const RefPtr<VSlotContainer> container = managed;

    EXPECT_TRUE(managed);
    EXPECT_TRUE(container);
    EXPECT_EQ(container, object);
    EXPECT_EQ(managed->ID, object->ID);
    EXPECT_EQ(object->getDomainType(), typeid(VObject));
}

TEST(VObject, TellsScriptsHowManyParametersItHas)
{
    RefPtr<VScriptFunctor> functor;
    {
        QuorlTest::Network network;
        const auto object = network.node("object");
        object->input("basic");
        object->input("for experts", 1);
        functor = object->findFunctor("getNumberOfParameters");
        EXPECT_EQ(functor->call({}, {})->get(typeid(int))->value, "1");
    }
    EXPECT_FALSE(functor->call({}, {})) << "of an object that has ended";
}

TEST(VObject, BelongsToADomainThatIsThereFromTheStart)
{
    EXPECT_EXIT(
        {
            bool isThere = false;
            for (const auto& [type, domain] : VCreatorTypes())
                if (type == Tolmen::TypeInfo(typeid(VObject))) isThere = true;
            std::exit(isThere ? 7 : 8);
        },
        testing::ExitedWithCode(7), "");
}

} // namespace
} // namespace Quorl
