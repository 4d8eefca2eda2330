#include <quorl/registry/VManagedObject.h>

#include <quorl/foundation/SpeakPtr.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VManagedDomainObject.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/EmptyDomain.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::errorOutputOf;
using QuorlTest::outputOf;

/// The base of a domain for each test: `Tag` keeps them apart.
template <class Tag>
class Thing final : public VManagedDomainObject<Thing<Tag>>
{
public:
    explicit Thing(const string& wantedName, int givenPriority = 0)
    {
        this->insert(wantedName, givenPriority);
    }
};

/// The domain of a test, which begins and ends without objects.
template <class Tag>
struct Domain
{
    using Object = Thing<Tag>;

    ~Domain() { QuorlTest::emptyDomain(type()); }

    static const std::type_info& type() { return typeid(Object); }
    static WeakPtr<VManagedObject> add(const string& name, int priority = 0)
    {
        return WeakPtr<VManagedObject>(new Object(name, priority));
    }
    static RefPtr<VManagedObject> find(const string& name)
    {
        return VManagedObject::find(type(), name);
    }

    /// What the cache leaves for a creator that is not loaded.
    static void addCached(const string& name, const string& module)
    {
        const RefPtr<VCreatorBaseInfo> info(new VCreatorBaseInfo);
        info->ModuleName = module;
        (*VCreators(type()))[name] = info;
    }
};

/// Notes what it is shown, and does in between what a test tells it.
struct Visit final : VManagedObjectIterator
{
    bool apply(int priority, const RefPtr<VManagedObject>& object, const string& name) override
    {
        seen.push_back(name + std::to_string(priority));
        EXPECT_TRUE(object);
        return !between || between(name);
    }
    std::function<bool(const string&)> between;
    std::vector<string> seen;
};

template <class Tag>
std::vector<string> traverse(int from = VManagedObject::kFirstPriority,
                             int to = VManagedObject::kLastPriority)
{
    Visit visit;
    const int count = VManagedObject::traverse(typeid(Thing<Tag>), visit, from, to);
    EXPECT_EQ(count, static_cast<int>(visit.seen.size()));
    return visit.seen;
}

using Names = std::vector<string>;

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

TEST(VManagedObject, TakesAnEntryOverThatWaitsForItsModule)
{
    struct Tag;
    Domain<Tag> domain;
    domain.addCached("X", "first.module");
    EXPECT_EQ(VManagedObject::size(domain.type()), 1);
    EXPECT_EQ(traverse<Tag>(), Names{});
    VManagedObject::CurrentLoadModule = "other.module";

    const auto object = domain.add("X", 4);

    VManagedObject::CurrentLoadModule.clear();
    EXPECT_EQ(object->getName(), "X");
    EXPECT_EQ(object->getLoadModule(), "first.module");
    EXPECT_EQ(traverse<Tag>(), Names{"X4"});
}

TEST(VManagedObject, RemembersTheModuleThatWasBeingLoaded)
{
    struct Tag;
    Domain<Tag> domain;
    VManagedObject::CurrentLoadModule = "a.module";
    const auto object = domain.add("X");
    VManagedObject::CurrentLoadModule.clear();
    EXPECT_EQ(object->getLoadModule(), "a.module");

    object->setName("elsewhere");
    EXPECT_EQ(object->getLoadModule(), "(creator not found)");
    (*VCreators(domain.type()))["elsewhere"] = RefPtr<VCreatorBaseInfo>();
    EXPECT_EQ(object->getLoadModule(), "(missing creator info)");
    object->setName("X");
}

TEST(VManagedObject, TriesToLoadTheModuleOfANameThatIsCached)
{
    struct Tag;
    Domain<Tag> domain;
    const QuorlTest::TemporaryFolder folder; // where the failure is logged
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    domain.addCached("X", "no.module");
    (*VCreators(domain.type()))["empty"] = RefPtr<VCreatorBaseInfo>();

    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(domain.find("X")); }),
              "VCreatorBaseInfo: No Creator, need to load [no.module]\n"
              "Loading Library [no.module] failed ;-(, see ZelmError.log for details.\n"
              "VCreatorBaseInfo: ERROR: Could not load [no.module]!!\n"
              "VCreatorBaseInfo: Merde, module [no.module] could not provide requested Creator. "
              "This is not good. Really not good.\n");
    EXPECT_EQ(outputOf([&] {
                  EXPECT_FALSE(domain.find("empty"));
                  EXPECT_FALSE(domain.find("absent"));
              }),
              "");
    std::filesystem::current_path(before);
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

TEST(VManagedObjectTraverse, GoesByPriorityThenByInsertionInAHalfOpenRange)
{
    struct Tag;
    Domain<Tag> domain;
    domain.add("b", 2);
    domain.add("a", 2);
    domain.add("low", -5);
    domain.add("high", 9);

    EXPECT_EQ(traverse<Tag>(), (Names{"low-5", "b2", "a2", "high9"}));
    EXPECT_EQ(traverse<Tag>(2, 9), (Names{"b2", "a2"}));
    EXPECT_EQ(traverse<Tag>(2, 2), Names{});
    EXPECT_EQ(traverse<Tag>(9, 2), Names{});
    EXPECT_EQ(traverse<Tag>(3, 10), Names{"high9"});
}

TEST(VManagedObjectTraverse, DoesNotCountTheVisitThatStoppedIt)
{
    struct Tag;
    Domain<Tag> domain;
    for (const char* name : {"a", "b", "c"}) domain.add(name);
    Visit visit;
    visit.between = [](const string& name) { return name != "b"; };

    EXPECT_EQ(VManagedObject::traverse(domain.type(), visit), 1);
    EXPECT_EQ(visit.seen.size(), 2U);
}

TEST(VManagedObjectTraverse, SurvivesVisitorsThatRemoveAndInsert)
{
    struct Tag;
    Domain<Tag> domain;
    for (const char* name : {"a", "b", "c", "d"}) domain.add(name);
    Visit visit;
    visit.between = [&](const string& name) {
        if (name == "a")
        {
            VManagedObject::remove(domain.type(), "a"); // where the walk stands
            VManagedObject::remove(domain.type(), "b"); // where it would go next
            domain.add("e");
        }
        if (name == "e") VManagedObject::remove(domain.type(), "e");
        return true;
    };

    EXPECT_EQ(VManagedObject::traverse(domain.type(), visit), 4);
    EXPECT_EQ(visit.seen, (Names{"a0", "c0", "d0", "e0"}));
}

TEST(VManagedObjectTraverse, ReachesWhatIsAddedRightBehindALineThatWasRemoved)
{
    struct Tag;
    Domain<Tag> domain;
    for (const char* name : {"before", "a", "b"}) domain.add(name);
    domain.add("last", 9);
    Visit visit;
    visit.between = [&](const string& name) {
        if (name != "a") return true;
        VManagedObject::remove(domain.type(), "a");
        VManagedObject::remove(domain.type(), "b");
        domain.add("higher", 5);
        domain.add("equal", 0);
        domain.add("lower", -1);
        VManagedObject::remove(domain.type(), "before");
        return true;
    };

    VManagedObject::traverse(domain.type(), visit);

    EXPECT_EQ(visit.seen, (Names{"before0", "a0", "equal0", "higher5", "last9"}));
}

TEST(VManagedObjectTraverse, ReachesTheSuccessorOfTheOnlyObject)
{
    struct Tag;
    Domain<Tag> domain;
    domain.add("a");
    Visit visit;
    visit.between = [&](const string& name) {
        if (name != "a") return true;
        VManagedObject::remove(domain.type(), "a");
        domain.add("b");
        return true;
    };

    EXPECT_EQ(VManagedObject::traverse(domain.type(), visit), 2);
    EXPECT_EQ(visit.seen, (Names{"a0", "b0"}));
}

TEST(VManagedObjectTraverse, CountsWalksUnderWay)
{
    struct Tag;
    Domain<Tag> domain;
    domain.add("a");
    Visit outer;
    int walks = 0;
    outer.between = [&](const string&) {
        traverse<Tag>();
        walks = VCreators(domain.type())->value();
        return true;
    };
    VManagedObject::traverse(domain.type(), outer);

    EXPECT_EQ(walks, 1);
    EXPECT_EQ(VCreators(domain.type())->value(), 0);
}

TEST(VManagedObjectTraverse, TakesAFunctionAndRestoresTheCountIfThatIsEmpty)
{
    struct Tag;
    Domain<Tag> domain;
    const std::function<bool(int, const RefPtr<VManagedObject>&, const string&)> empty;
    EXPECT_EQ(VManagedObject::iterate(domain.type(), empty), 0) << "there is nothing to visit";
    domain.add("a", 3);
    Names seen;

    EXPECT_EQ(VManagedObject::iterate(
                  domain.type(),
                  [&](int priority, const RefPtr<VManagedObject>&, const string& name) {
                      seen.push_back(name + std::to_string(priority));
                      return true;
                  },
                  3, 4),
              1);
    EXPECT_EQ(seen, Names{"a3"});
    EXPECT_THROW(VManagedObject::iterate(domain.type(), empty), std::bad_function_call);
    EXPECT_EQ(VCreators(domain.type())->value(), 0);
}

TEST(VManagedObjectTraverse, SaysThatAnObjectIsOwnedByNobody)
{
    struct Tag;
    Domain<Tag> domain;
    const auto object = domain.add("a");
    object.referer->strong = 0;
    string said;

    const string text = outputOf([&] {
        said = errorOutputOf([&] {
            Visit visit;
            object.referer->strong = 0;
            VManagedObject::traverse(domain.type(), visit);
        });
    });

    EXPECT_EQ(text, "VManagedObject::traverse(): a []\n");
    EXPECT_NE(said.find("VInfo->getCreator()"), string::npos);
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

struct Removed final : VManagedObject::VRemoveItem
{
    void removeItem(const string& module, const RefPtr<VManagedObject>& object) override
    {
        items.push_back(module + ":" + (object ? object->getName() : "none"));
    }
    Names items;
};

TEST(VManagedObjectModules, LeaveCachedEntriesWhenTheyAreUnloaded)
{
    struct Tag;
    Domain<Tag> domain;
    VManagedObject::CurrentLoadModule = "m.module";
    const auto a = domain.add("a");
    domain.add("b");
    VManagedObject::CurrentLoadModule = "other";
    const auto other = domain.add("c");
    VManagedObject::CurrentLoadModule.clear();
    Removed removed;

    VManagedObject::UnloadVModule("m.module", removed);

    EXPECT_EQ(removed.items, (Names{"m.module:a", "m.module:b"}));
    EXPECT_FALSE(a);
    EXPECT_TRUE(other);
    EXPECT_EQ(VManagedObject::size(domain.type()), 3);
    EXPECT_EQ(traverse<Tag>(), Names{"c0"});
    const QuorlTest::TemporaryFolder folder; // where the failure is logged
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_TRUE(outputOf([&] {
                    domain.find("a");
                }).starts_with("VCreatorBaseInfo: No Creator, need to load [m.module]\n"));
    std::filesystem::current_path(before);
}

TEST(VManagedObjectModules, VisitAReloadedObjectOnceForEachLineOfItsName)
{
    struct Tag;
    Domain<Tag> domain;
    VManagedObject::CurrentLoadModule = "m.module";
    domain.add("a");
    Removed removed;
    VManagedObject::UnloadVModule("m.module", removed);
    domain.add("a");
    VManagedObject::CurrentLoadModule.clear();

    EXPECT_EQ(traverse<Tag>(), (Names{"a0", "a0"}));
}

TEST(VManagedObjectModules, AreVisitedDomainByDomainWhereTheTableOfModulesDoesNotKnowThem)
{
    struct TagA;
    struct TagB;
    Domain<TagA> a;
    Domain<TagB> b;
    a.addCached("stop", "1");
    a.addCached("after", "1");
    a.addCached("unseen", "1");
    b.add("live");
    Names seen;
    const VManagedObject::ModuleVisit visit =
        [&](const string& module, const RefPtr<VManagedObject>& object, const string& name) {
            if (name == "after" || name == "stop" || name == "unseen" || name == "live")
                seen.push_back(module + name + (object ? "!" : "?"));
            return name != "stop";
        };
    const int all = VManagedObject::iterateModules(visit);

    // Which of the two domains comes first is up to the linker.
    EXPECT_EQ(std::erase(seen, "live!"), 1U) << "false ends its own domain only";
    EXPECT_EQ(seen, (Names{"1after?", "1stop?"}));
    struct Count final : VManagedObject::ModuleIterator
    {
        bool apply(const string&, const RefPtr<VManagedObject>&, const string&) override
        {
            return true;
        }
    };
    Count count;
    EXPECT_EQ(VManagedObject::iterateModules(count), all + 2);
}

TEST(VManagedObjectModules, MayRemoveEntriesWhileTheyAreVisited)
{
    struct Tag;
    Domain<Tag> domain;
    for (const char* name : {"a", "b", "c"}) domain.addCached(name, "m");
    Names seen;
    VManagedObject::iterateModules(
        [&](const string& module, const RefPtr<VManagedObject>&, const string& name) {
            if (module != "m") return true;
            seen.push_back(name);
            if (name == "a")
            {
                VManagedObject::remove(domain.type(), "a");
                VManagedObject::remove(domain.type(), "b");
            }
            return true;
        });

    EXPECT_EQ(seen, (Names{"a", "c"}));
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
