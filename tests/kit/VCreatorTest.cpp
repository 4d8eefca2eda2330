#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>
#include <quorl/objects/VObjectUserInfo.h>
#include <quorl/registry/VAcceptList.h>
#include <quorl/registry/VInputCreator.h>
#include <quorl/services/VActionNotifier.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace Quorl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

struct Apple
{
    bool operator==(const Apple&) const = default;
};
struct Pear
{
    bool operator==(const Pear&) const = default;
};

} // namespace

template <>
struct VValueTrait<Apple>
{
    static bool setValueFromText(Apple& /*datum*/, const string& /*text*/) { return false; }
    static string Text(const Apple& /*datum*/) { return "apple"; }
};

template <>
struct VValueTrait<Pear>
{
    static bool setValueFromText(Pear& /*datum*/, const string& /*text*/) { return false; }
    static string Text(const Pear& /*datum*/) { return "pear"; }
};

namespace
{

class Tree final : public VObject
{
public:
    using VObject::VObject;
    const OutputSlot<Apple> first{*this, "first"};
    const OutputSlot<Apple> second{*this, "second"};
    const OutputSlot<Pear> pear{*this, "pear"};
};

class Press final : public VObject
{
public:
    using VObject::VObject;

    void setup(const VSlotSet& /*slots*/) override
    {
        if (setups++ == 0) wasReady = RequestProcessing;
    }

    const InputSlot<Apple> apples{*this, "apples"};
    int setups = 0;
    bool wasReady = true; ///< when it was set up first
};

/// Cannot be set up.
class Stone final : public VObject
{
public:
    using VObject::VObject;

    void setup(const VSlotSet& /*slots*/) override { throw std::runtime_error("too hard"); }

    const OutputSlot<Apple> apple{*this, "apple"};
};

/// Hears of new objects.
struct Births final : VActionNotifier
{
    void createVObject(const RefPtr<VObject>& object, const Tolmen::Intercube& /*info*/,
                       const WeakPtr<VCreatorBase>& creator) override
    {
        log.push_back(object->getName() + " by " + creator->getName() + ", " + object->UserInfo +
                      (object->RequestProcessing ? ", ready" : ", not ready"));
    }
    std::vector<string> log;
};

RefPtr<VCreatorBase> findCreator(const string& key)
{
    return VManagedObject::find(typeid(VInputCreatorBase), key);
}

VCreator<Tree> trees("Kit/Tree(tall)", {.provides = {typeid(Apple), typeid(Pear)},
                                        .summary = "bears fruit",
                                        .description = "for years",
                                        .author = "somebody",
                                        .applications = "Garden;Kitchen",
                                        .priority = 7});
VCreator<Press> presses("Kit/Press", {.accepts = {typeid(Apple)}, .priority = 8});
VCreator<Stone> stones("Kit/Stone", {});

struct KitCreator : testing::Test
{
    ~KitCreator() override
    {
        for (const RefPtr<VObject>& object : made) object->VManagedObject::remove();
    }

    RefPtr<VObject> make(VCreatorBase& creator, const string& name,
                         const Tolmen::Intercube& context = {})
    {
        made.push_back(creator.create(name, context));
        return made.back();
    }

    std::vector<RefPtr<VObject>> made;
};

TEST_F(KitCreator, IsFoundByItsKeyAndTellsItsTexts)
{
    const RefPtr<VCreatorBase> found = findCreator("Kit/Tree(tall)");

    ASSERT_TRUE(found);
    EXPECT_EQ(found.rawptr(), &trees);
    EXPECT_EQ(found->element[VCreatorProperties::Category], "Kit");
    EXPECT_EQ(found->element[VCreatorProperties::Name], "Tree");
    EXPECT_EQ(found->element[VCreatorProperties::Variant], "tall");
    EXPECT_EQ(found->element[VCreatorProperties::Summary], "bears fruit");
    EXPECT_EQ(found->element[VCreatorProperties::Description], "for years");
    EXPECT_EQ(found->Author(), "somebody");
    EXPECT_EQ(found->element[VCreatorProperties::Applications], "Garden;Kitchen");
    EXPECT_EQ(found->VManagedObject::priority, 7);
}

TEST_F(KitCreator, MakesAnObjectThatIsReadyAndKnowsItsCreator)
{
    const RefPtr<Press> press = make(presses, "press");

    ASSERT_TRUE(press);
    EXPECT_EQ(press->CreatorName(), "Kit/Press");
    EXPECT_TRUE(press->RequestProcessing);
    EXPECT_EQ(press->setups, 1);
    EXPECT_FALSE(press->wasReady) << "set up before others may ask it";
    EXPECT_EQ(press->VManagedObject::priority, 0) << "not that of its creator";
}

TEST_F(KitCreator, NamesANamelessObjectByItsIdentifier)
{
    EXPECT_EQ(make(trees, "")->getName(), "Tree");
}

TEST_F(KitCreator, GivesAnObjectThePreferencesOfItsContext)
{
    const RefPtr<VCreationPreferences> wanted(new VCreationPreferences("sour"));
    Tolmen::Intercube context;
    context.addInterface(wanted);

    EXPECT_EQ(make(presses, "p", context)->CreationPreferences, wanted);
    EXPECT_FALSE(make(presses, "q")->CreationPreferences);
}

TEST_F(KitCreator, TellsTheSubscribersOfAnObjectThatIsReady)
{
    const RefPtr<Births> births(new Births);
    ASSERT_TRUE(births->activate());
    Tolmen::Intercube context;
    context.addInterface(new VObjectUserInfo("me"));
    make(presses, "press", context);

    EXPECT_THAT(births->log, ElementsAre("press by Kit/Press, me, ready"));
}

TEST_F(KitCreator, LeavesNothingOfAnObjectThatCannotBeSetUp)
{
    const RefPtr<Births> births(new Births);
    ASSERT_TRUE(births->activate());
    EXPECT_THROW(stones.create("stone", {}), std::runtime_error);

    EXPECT_FALSE(VManagedObject::find(typeid(VObject), "stone"));
    EXPECT_THAT(births->log, IsEmpty());
}

TEST_F(KitCreator, AcceptsEachOutputOfItsTypes)
{
    const RefPtr<VObject> tree = make(trees, "tree");
    std::vector<string> names;
    for (const RefPtr<VAcceptInfo>& way : presses.accept(tree)) names.push_back(way->name);

    EXPECT_THAT(names, ElementsAre("first", "second"));
    EXPECT_TRUE(trees.accept(tree).empty());
    EXPECT_TRUE(presses.accept({}).empty());
    EXPECT_TRUE(presses.accept(make(presses, "press")).empty());
}

TEST_F(KitCreator, MakesChildrenOfWhatItAccepts)
{
    const RefPtr<VObject> tree = make(trees, "tree");
    const RefPtr<VAcceptList> ways = VAcceptList::getAcceptors(tree, 8, 9);
    ASSERT_TRUE(ways);
    ASSERT_EQ(ways->size(), 2U);

    const auto [child, slot] = tree->createChild(ways->back(), Tolmen::Intercube());
    made.push_back(child);

    ASSERT_TRUE(child);
    EXPECT_EQ(child->getName(), "tree\x1EKit/Press");
    EXPECT_EQ(slot->Name, "apples");
    EXPECT_EQ(slot->Parameter, tree->getOutput("second")->Parameter);
    EXPECT_EQ(RefPtr<Press>(child)->setups, 2) << "at its creation, and for the new connection";
}

TEST_F(KitCreator, ProvidesInputsOfItsTypes)
{
    const RefPtr<Press> press = make(presses, "press");

    EXPECT_EQ(press->attachNewObject(press->apples.slot(), "supply", {}, {}),
              VSlotContainer::AttachOk);

    const RefPtr<VObject> supply = press->apples.slot()->getSource();
    ASSERT_TRUE(supply);
    made.push_back(supply);
    EXPECT_EQ(supply->getName(), "supply");
    EXPECT_EQ(supply->CreatorName(), "Kit/Tree(tall)");
}

TEST(KitCreatorLife, WithdrawsFromItsTypesAtItsEnd)
{
    struct Quince
    {
    };
    {
        const RefPtr<VCreatorBase> creator(
            new VCreator<Press>("Kit/Short", {.provides = {typeid(Quince)}, .isPinned = false}));
        EXPECT_EQ(findBestVInputCreator(typeid(Quince), {}), creator);
        creator->VManagedObject::remove();
    }
    EXPECT_FALSE(findCreator("Kit/Short"));
    struct CountAll final : VInputCreatorIterator
    {
        bool apply(const WeakPtr<VInputCreatorBase>& /*creator*/) override
        {
            ++count;
            return true;
        }
        int count = 0;
    } all;
    EXPECT_TRUE(iterateVInputCreators(typeid(Quince), all));
    EXPECT_EQ(all.count, 0);
    EXPECT_FALSE(unregisterVInput(typeid(Quince), {})) << "no entry was left behind";
}

TEST(KitCreatorLife, APinnedOneOutlivesItsRemoval)
{
    auto creator = std::make_unique<VCreator<Press>>("Kit/Pinned", CreatorTraits{.isPinned = true});
    const WeakPtr<VCreatorBase> seen(creator.get());
    creator->VManagedObject::remove();

    EXPECT_TRUE(seen);
    EXPECT_EQ(seen.referer->strong, 1);
    creator.reset();
    EXPECT_FALSE(seen);
}

} // namespace
} // namespace Quorl
