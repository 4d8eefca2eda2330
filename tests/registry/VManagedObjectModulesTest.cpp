#include <quorl/registry/VManagedObject.h>

#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>
#include <tests/registry/TestDomain.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <filesystem>

/// Objects and the modules that they come from: what is loaded, unloaded, or known from a cache.
namespace Quorl
{
namespace
{

using QuorlTest::Domain;
using QuorlTest::Names;
using QuorlTest::outputOf;
using QuorlTest::traverse;

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

TEST(VManagedObjectModules, AreNotVisitedOnceTheTableOfModulesKnowsThem)
{
    struct Tag;
    Domain<Tag> domain;
    domain.addCached("a", "known.module");
    domain.addCached("b", "unknown.module");
    VModules::enableCache("known.module");
    Names seen;
    VManagedObject::iterateModules(
        [&](const string& module, const RefPtr<VManagedObject>&, const string& name) {
            if (module.ends_with("known.module")) seen.push_back(name);
            return true;
        });
    VGlobals::theGlobals().modules->erase("known.module");

    EXPECT_EQ(seen, Names{"b"});
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

} // namespace
} // namespace Quorl
