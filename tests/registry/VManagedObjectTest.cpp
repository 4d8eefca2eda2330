#include <quorl/registry/VManagedObject.h>

#include <tests/registry/TestDomain.h>
#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <map>
#include <type_traits>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::Domain;
using QuorlTest::Names;
using QuorlTest::outputOf;
using QuorlTest::Thing;
using QuorlTest::traverse;

TEST(VManagedObject, StaysOutOfTheTableWithAnEmptyName)
{
    struct Tag;
    Domain<Tag> domain;
    const string type = typeid(Thing<Tag>).name();
    VManagedObject::CurrentLoadModule = "some.module";
    RefPtr<Thing<Tag>> object;

    EXPECT_EQ(outputOf([&] { object = new Thing<Tag>(""); }),
              "VManagedObject::insert<" + type + "> REFUSE to insert empty object (some.module)\n");

    VManagedObject::CurrentLoadModule.clear();
    EXPECT_EQ(object->domainMap, nullptr);
    EXPECT_FALSE(object->remove());
    EXPECT_EQ(VManagedObject::size(domain.type()), 0);
}

TEST(VManagedObject, NumbersDuplicatesOnesFirst)
{
    struct Tag;
    Domain<Tag> domain;
    Names names;
    for (int i = 0; i < 13; ++i) names.push_back(domain.add("X")->getName());

    EXPECT_EQ(names, (Names{"X", "X1", "X2", "X3", "X4", "X5", "X6", "X7", "X8", "X9", "X01", "X11",
                            "X21"}));
    for (const string& name : names) EXPECT_EQ(domain.find(name)->getName(), name);
}

TEST(VManagedObject, RefusesTheHundredAndFirstOfOneName)
{
    struct Tag;
    Domain<Tag> domain;
    const auto first = domain.add("X");
    for (int i = 0; i < 99; ++i) domain.add("X");
    EXPECT_EQ(VManagedObject::size(domain.type()), 100);
    RefPtr<Thing<Tag>> refused;

    EXPECT_EQ(outputOf([&] { refused = new Thing<Tag>("X"); }),
              "VManagedObject::insert(): Do you really need more than 100 instances of X ?\n "
              "(object not registered!)\n");
    EXPECT_EQ(VManagedObject::size(domain.type()), 100);
    EXPECT_EQ(refused->domainMap, VCreators(domain.type()));
    EXPECT_EQ(refused->getName(), "") << "its own, which was empty";
}

TEST(VManagedObject, RemovesTheLiveNamesakeOfARefusedObject)
{
    struct Tag;
    class Named final : public VManagedDomainObject<Thing<Tag>>
    {
    public:
        explicit Named(const string& wantedName) : VManagedDomainObject<Thing<Tag>>(wantedName, 0)
        {
            insert(wantedName, 0);
        }
    };
    Domain<Tag> domain;
    const auto first = domain.add("X");
    for (int i = 0; i < 99; ++i) domain.add("X");
    RefPtr<Named> refused;
    outputOf([&] { refused = new Named("X"); });

    EXPECT_TRUE(refused->remove());

    EXPECT_FALSE(first);
    EXPECT_TRUE(refused);
}

TEST(VManagedObject, LivesOnTheRegistryAloneUntilItIsRemoved)
{
    struct Tag;
    Domain<Tag> domain;
    const auto object = domain.add("alone");
    EXPECT_EQ(object.referer->strong, 1);

    EXPECT_TRUE(object->remove());

    EXPECT_FALSE(object);
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(VManagedObject::remove(domain.type(), "alone")); }),
              "Could not find alone...\n");
}

TEST(VManagedObject, MakesADomainByBeingSoughtButNotByBeingCounted)
{
    struct Unused final : VManagedObject
    {
        const std::type_info& getDomainType() const override { return typeid(Unused); }
    };
    EXPECT_EQ(VManagedObject::size(typeid(Unused)), 0);
    EXPECT_FALSE(VCreatorTypes().contains(typeid(Unused)));
    EXPECT_FALSE(VManagedObject::find(typeid(Unused), "x"));
    EXPECT_TRUE(VCreatorTypes().contains(typeid(Unused)));
    EXPECT_TRUE(VManagedObject::InitDomain(typeid(Unused)));
}

TEST(VManagedObject, CountsOverAllDomains)
{
    struct TagA;
    struct TagB;
    const int before = VManagedObject::count();
    Domain<TagA> a;
    Domain<TagB> b;
    a.add("X");
    b.add("X");
    b.add("Y");

    EXPECT_EQ(VManagedObject::count() - before, 3);
}

TEST(VManagedObject, MovesToAnotherPriority)
{
    struct Tag;
    Domain<Tag> domain;
    domain.add("a", 1);
    const auto b = domain.add("b", 2);
    b->setPriority(0);

    EXPECT_EQ(traverse<Tag>(), (Names{"b0", "a1"}));
    EXPECT_EQ(b->priority, 0);
}

TEST(VManagedObject, GetsALineInTheIndexThoughItWasNeverInserted)
{
    struct Tag;
    struct Bare final : VManagedDomainObject<Thing<Tag>>
    {
        Bare() : VManagedDomainObject<Thing<Tag>>("bare", 1) {}
    };
    Domain<Tag> domain;
    Bare bare;
    EXPECT_EQ(bare.domainMap, nullptr);
    bare.setPriority(5);

    EXPECT_EQ(VCreators(domain.type())->priorities().size(), 1U);
    EXPECT_EQ(traverse<Tag>(), Names{}) << "a line without an entry is passed over";
}

TEST(VManagedObject, KeepsItsDomainWhenItIsRemovedByName)
{
    struct Tag;
    Domain<Tag> domain;
    const RefPtr<VManagedObject> object = domain.add("a");

    EXPECT_TRUE(VManagedObject::remove(domain.type(), "a"));
    EXPECT_NE(object->domainMap, nullptr);
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(object->remove()); }), "Could not find a...\n");
    EXPECT_EQ(object->domainMap, nullptr);
}

TEST(VManagedObject, TakesTheNameOfOneThatEndedDirectly)
{
    struct Tag;
    Domain<Tag> domain;
    auto* const object = new Thing<Tag>("a");
    delete object;

    EXPECT_EQ(domain.add("a")->getName(), "a");
    EXPECT_EQ(traverse<Tag>(), (Names{"a0", "a0"})) << "the index has two lines of the name now";
}

TEST(VCreatorMap, LooksUpWhatComesToItsTableAndLeavesIt)
{
    struct Tag;
    Domain<Tag> domain;
    VCreatorMap& map = *VCreators(domain.type());
    domain.add("a");
    domain.addCached("b", "some.module");

    EXPECT_EQ(map.lookUp("b"), &*map.find("b"));
    EXPECT_EQ(map.erase("b"), 1U);
    EXPECT_EQ(map.erase("b"), 0U);
    EXPECT_EQ(map.lookUp("b"), nullptr);
    EXPECT_EQ(map.lookUp("a"), &*map.find("a"));
    map.clear();
    EXPECT_EQ(map.lookUp("a"), nullptr);
}

TEST(VCreatorMap, FindsTheEntriesOfItsLinesAnew)
{
    struct Tag;
    Domain<Tag> domain;
    domain.add("a");
    EXPECT_EQ(traverse<Tag>(), Names{"a0"});
    VCreators(domain.type())->clear();
    EXPECT_EQ(traverse<Tag>(), Names{}) << "a line without an entry is passed over";
    domain.add("a", 1);

    EXPECT_EQ(traverse<Tag>(), (Names{"a0", "a1"}));
    domain.find("a")->remove();
    EXPECT_EQ(traverse<Tag>(), Names{});
}

/// Asks its domain for all objects when it ends.
struct LastLook final : VManagedDomainObject<LastLook>
{
    LastLook(const string& wantedName, std::vector<int>& foundBy) : found(foundBy)
    {
        insert(wantedName, 0);
    }
    ~LastLook() override
    {
        int count = 0;
        for (const char* const other : {"a", "b", "c"})
            if (VManagedObject::find(typeid(LastLook), other)) ++count;
        found.push_back(count);
    }
    std::vector<int>& found;
};

/// How many of three objects each finds when it ends, as `act` ends them.
template <class Act>
std::vector<int> lastLooks(Act&& act)
{
    std::vector<int> found;
    for (const char* const name : {"a", "b", "c"}) new LastLook(name, found);
    VManagedObject::find(typeid(LastLook), "a");
    act(*VCreators(typeid(LastLook)));
    const std::vector<int> foundMeanwhile = found;
    QuorlTest::emptyDomain(typeid(LastLook));
    return foundMeanwhile;
}

TEST(VCreatorMap, IsEmptyWhileWhatItWasClearedOfEnds)
{
    EXPECT_EQ(lastLooks([](VCreatorMap& map) { map.clear(); }), (std::vector<int>{0, 0, 0}));
}

TEST(VCreatorMap, IsWholeWhileWhatWasErasedEnds)
{
    const auto eraseAll = [](VCreatorMap& map) {
        for (const char* const name : {"b", "a", "c"})
        {
            map.erase(name);
            EXPECT_EQ(map.lookUp(name), nullptr);
        }
    };
    EXPECT_EQ(lastLooks(eraseAll), (std::vector<int>{2, 1, 0}));
}

TEST(VCreatorMap, MayBeAskedByWhatEndsWithIt)
{
    struct AskingInfo final : VCreatorBaseInfo
    {
        AskingInfo(VCreatorMap* domain, std::vector<std::size_t>& sizes)
            : map(domain), sizesSeen(sizes)
        {
        }
        ~AskingInfo() override { sizesSeen.push_back(map->lookUp("b") ? 1 : map->size()); }
        VCreatorMap* map;
        std::vector<std::size_t>& sizesSeen;
    };
    std::vector<std::size_t> sizes;
    RefPtr<VCreatorMap> map(new VCreatorMap);
    for (const char* const name : {"a", "b"})
        map->entered(name).second = new AskingInfo(map.rawptr(), sizes);

    map = RefPtr<VCreatorMap>();

    EXPECT_EQ(sizes, (std::vector<std::size_t>{0, 0}));
}

template <class Map>
concept LosesEntriesUnseen =
    requires(Map& map) { std::erase_if(map, [](const auto&) { return true; }); } ||
    requires(Map& map) { map.extract(map.begin()); } || requires(Map& map) { map.swap(map); } ||
    requires(Map& map) { map.merge(map); };

static_assert(LosesEntriesUnseen<std::map<string, RefPtr<VCreatorBaseInfo>>>);
static_assert(!LosesEntriesUnseen<VCreatorMap>);

TEST(VCreatorMap, IsErasedFromByItsOwnOperationsAlone)
{
    using NameTable = std::map<string, RefPtr<VCreatorBaseInfo>>;
    EXPECT_TRUE((std::is_base_of_v<NameTable, VCreatorMap>));
    EXPECT_FALSE((std::is_convertible_v<VCreatorMap&, NameTable&>));
}

TEST(VCreatorMap, FindsOneOfALakhOfObjects)
{
    struct Tag;
    Domain<Tag> domain;
    for (int i = 0; i < 100000; ++i) domain.add("object " + std::to_string(i), i % 7);

    EXPECT_EQ(VManagedObject::size(domain.type()), 100000);
    EXPECT_TRUE(domain.find("object 99999"));
    EXPECT_EQ(traverse<Tag>(3, 4).size(), 14286U);
}

} // namespace
} // namespace Quorl
