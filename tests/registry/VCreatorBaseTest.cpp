#include <quorl/foundation/Chunk.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/TestCreator.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace Quorl
{
namespace
{

using QuorlTest::outputOf;
using QuorlTest::Registered;
using QuorlTest::TestCreator;
using testing::ElementsAre;
using testing::IsEmpty;

struct Identified final : VCreatorBase::IdentifierIterator
{
    bool apply(const WeakPtr<VCreatorBase>& creator) override
    {
        names.push_back(creator->getName());
        return names.size() < most;
    }
    std::vector<string> names;
    std::size_t most = 100;
};

struct Applications final : VCreatorBase::ApplicationIterator
{
    bool apply(const string& name, VCreatorBase::ApplicationProperties& properties) override
    {
        if (!name.starts_with("test ")) return true;
        string line = name + ":";
        for (const WeakPtr<VCreatorBase>& creator : properties.creators)
            line += creator ? " " + creator->getName() : " dead";
        lines.push_back(line);
        return name != last;
    }
    std::vector<string> lines;
    string last;
};

VCreatorProperties meantFor(const string& key, const string& applications)
{
    VCreatorProperties properties(key, "", "");
    properties.element[10] = applications;
    return properties;
}

TEST(VCreatorBase, IsFoundByItsKeyInTheDomainOfInputCreators)
{
    const Registered creator(new TestCreator("Found/Me(now)", 3));

    EXPECT_EQ(VManagedObject::find(typeid(VInputCreatorBase), "Found/Me(now)"), creator.handle());
    EXPECT_EQ(creator->VManagedObject::priority, 3);
    EXPECT_EQ(creator->VInputCreatorBase::priority, 3);
    EXPECT_EQ(creator->element[0] + creator->element[1] + creator->element[2], "FoundMenow");
    EXPECT_EQ(creator->element[3] + creator->element[4], "");
}

TEST(VCreatorBase, WithTextsOfItsOwnIsNamedByTheirKey)
{
    VCreatorProperties properties("Made/Of(texts)", "third", "fourth");
    const Registered creator(new TestCreator(properties));

    EXPECT_EQ(creator->getName(), "Made/Of(texts)");
    EXPECT_EQ(creator->element[3], "third");
}

TEST(VCreatorBase, KeepsPreferencesAndText)
{
    const RefPtr<VCreationPreferences> offers(new VCreationPreferences("word"));
    static const char text[] = "the source";
    const Registered creator(new TestCreator("Kept/A", 0, offers, text));

    EXPECT_EQ(creator->preferences, offers);
    EXPECT_EQ(creator->text, text) << "the pointer, not a copy";
}

TEST(VCreatorBase, WarnsOfAnEmptyNameBehindTheRegistrysRefusal)
{
    VManagedObject::CurrentLoadModule = "some.zelm";
    std::unique_ptr<TestCreator> nameless;
    EXPECT_EQ(outputOf([&] {
                  nameless = std::make_unique<TestCreator>("", 4, RefPtr<VCreationPreferences>(),
                                                           "the text");
              }),
              string("VManagedObject::insert<") + typeid(VInputCreatorBase).name() +
                  "> REFUSE to insert empty object (some.zelm)\n"
                  "\n************ WARNING: VCreatorBase::VCreatorBase(,4) EMPTY creator name in "
                  "Zelm Module\n\tthe text\n *** no key available!\n\n");
    VManagedObject::CurrentLoadModule = "";

    EXPECT_EQ(nameless->getName(), "");
    Identified all;
    EXPECT_EQ(VCreatorBase::iterateIdentifiers("", all), 1) << "in the other tables all the same";
}

TEST(VCreatorBase, WarnsOfAnEmptyNameAlsoWithoutText)
{
    std::unique_ptr<TestCreator> nameless;
    const string said = outputOf([&] { nameless = std::make_unique<TestCreator>(""); });
    EXPECT_TRUE(said.ends_with("(,0) EMPTY creator name in Zelm Module\n\t\n *** no key "
                               "available!\n\n"))
        << said;
}

TEST(VCreatorBase, IsNotEndedByHandlesIfItIsPinned)
{
    auto creator =
        std::make_unique<TestCreator>("Pinned/A", 0, RefPtr<VCreationPreferences>(), nullptr, true);
    const WeakPtr<VCreatorBase> seen(creator.get());
    EXPECT_EQ(seen.referer->strong, 2) << "the registry's share, and its own";
    creator->VManagedObject::remove();

    EXPECT_EQ(seen.referer->strong, 1);
    creator.reset();
    EXPECT_FALSE(seen);
}

TEST(VCreatorBase, IsFoundByItsIdentifierInTheOrderOfConstruction)
{
    const Registered second(new TestCreator("Z/Twin"));
    const Registered first(new TestCreator("A/Twin(b)"));
    Registered gone(new TestCreator("B/Twin"));
    gone.drop();
    Identified all;

    EXPECT_EQ(VCreatorBase::iterateIdentifiers("Twin", all), 2);
    EXPECT_THAT(all.names, ElementsAre("Z/Twin", "A/Twin(b)"));
    EXPECT_EQ(VCreatorBase::iterateIdentifiers("Twi", all), 0);

    Identified one;
    one.most = 1;
    EXPECT_EQ(VCreatorBase::iterateIdentifiers("Twin", one), 0)
        << "the stopping one is not counted";
}

TEST(VCreatorBase, StandsUnderEachApplicationOfItsList)
{
    const Registered b(new TestCreator(meantFor("App/B", "test one;test two")));
    const Registered a(new TestCreator(meantFor("App/A", "test two;;test one;")));
    Registered gone(new TestCreator(meantFor("App/C", "test three")));
    gone.drop();
    Applications all;
    VCreatorBase::iterateApplications(all);

    EXPECT_THAT(all.lines,
                ElementsAre("test one: App/B App/A", "test three: dead", "test two: App/B App/A"));

    Applications some;
    some.last = "test three";
    const int before = VCreatorBase::iterateApplications(some);
    EXPECT_EQ(some.lines.size(), 2U);
    Applications none;
    EXPECT_EQ(VCreatorBase::iterateApplications(none), before + 2);
}

/// The number of entries under an application, dead ones too; -1 if it is unknown.
struct Entries final : VCreatorBase::ApplicationIterator
{
    explicit Entries(const string& name) : wanted(name) {}
    bool apply(const string& name, VCreatorBase::ApplicationProperties& properties) override
    {
        if (name != wanted) return true;
        count = static_cast<int>(properties.creators.size());
        return false;
    }
    const string wanted;
    int count = -1;
};

TEST(VCreatorBase, LeavesItsApplicationsNowAndThenWhenItHasEnded)
{
    for (int number = 0; number < 1000; ++number)
        Registered(new TestCreator(meantFor("App/Passing", "test busy"))).drop();
    Entries busy("test busy");
    VCreatorBase::iterateApplications(busy);

    EXPECT_GT(busy.count, 0);
    EXPECT_LE(busy.count, 16);
}

TEST(VCreatorBase, LeavesNoApplicationThatIsVisited)
{
    struct Visit final : VCreatorBase::ApplicationIterator
    {
        bool apply(const string& name, VCreatorBase::ApplicationProperties& properties) override
        {
            if (name != "test visited") return true;
            for (int number = 0; number < 100; ++number)
                Registered(new TestCreator(meantFor("App/Visited", name))).drop();
            count = properties.creators.size();
            return true;
        }
        std::size_t count = 0;
    };
    const Registered creator(new TestCreator(meantFor("App/Stays", "test visited")));
    Visit visit;
    VCreatorBase::iterateApplications(visit);

    EXPECT_EQ(visit.count, 101U);
}

TEST(VCreatorBase, TellsWhetherAnApplicationIsEnabled)
{
    VCreatorBase::ApplicationProperties properties;
    EXPECT_TRUE(properties.isEnabled());
    properties.attributes.setAttribute("Enabled", new Tolmen::Chunk<bool>(1, false));
    EXPECT_FALSE(properties.isEnabled());
    properties.attributes.setAttribute("Enabled", new Tolmen::Chunk<bool>(1, true));
    EXPECT_TRUE(properties.isEnabled());
    properties.attributes.setAttribute("Enabled", new Tolmen::Chunk<double>(1, 0.0));
    EXPECT_TRUE(properties.isEnabled()) << "of another type, as good as none";
    properties.attributes.setAttribute("Enabled", new Tolmen::Chunk<bool>(0, false));
    EXPECT_TRUE(properties.isEnabled()) << "empty, as good as none";
}

/// An object that is one only by its name.
Registered<VObject> makeObject(const string& name)
{
    return Registered<VObject>(new VObject(name, 0, {}));
}

TEST(VCreatorBase, NamesAChildAfterABase)
{
    const Registered creator(new TestCreator("Naming/b"));

    EXPECT_EQ(creator->createChildname(""), "Naming/b");
    EXPECT_EQ(creator->createChildname("a"), "a\x1ENaming/b");
}

TEST(VCreatorBase, NamesAChildAfterItsParent)
{
    const Registered creator(new TestCreator("Naming/Child"));
    const Registered parent = makeObject("parent");
    const RefPtr<VAcceptInfo> info(new VAcceptInfo(typeid(int), "out"));
    const WeakPtr<VObject> seen = parent.handle();

    EXPECT_EQ(creator->createChildname(seen, info), "parent\x1ENaming/Child");
    EXPECT_EQ(creator->createChildname({}, info), "Child");
    EXPECT_EQ(creator->createChildname(seen, {}), "Child");
}

TEST(VCreatorBase, NamesAChildByItsInfoIfItHasNoOtherName)
{
    class Silent final : public VCreatorBase
    {
    public:
        Silent() : VCreatorBase("Naming/Silent", 0, {}, false, nullptr) {}
        using VCreatorBase::createChildname;
        string createChildname(const string& /*base*/) const override { return {}; }
        RefPtr<VObject> create(const string&, const Tolmen::Intercube&) override { return {}; }
        VAcceptInfoList accept(const RefPtr<VObject>&) override { return {}; }
    };
    const Registered creator(new Silent);
    const Registered parent = makeObject("parent");
    const RefPtr<VAcceptInfo> info(new VAcceptInfo(typeid(int), "out"));

    EXPECT_EQ(creator->createChildname(WeakPtr<VObject>(parent.handle()), info),
              "Silent\x1E\x1Fout");
}

TEST(VCreatorBase, DeletesNoInstances)
{
    const Registered creator(new TestCreator("Harmless/A"));
    const Registered object = makeObject("instance");
    const int before = VManagedObject::size(typeid(VObject));
    creator->deleteAllInstances(typeid(VObject));

    EXPECT_EQ(VManagedObject::size(typeid(VObject)), before);
    EXPECT_TRUE(VManagedObject::find(typeid(VObject), "instance"));
}

TEST(VCreatorBase, MayBeRenamedByTheRegistryButKeepsItsIdentifier)
{
    const Registered first(new TestCreator("Same/Key"));
    const Registered second(new TestCreator("Same/Key"));

    EXPECT_EQ(second->getName(), "Same/Key1");
    EXPECT_EQ(second->element[1], "Key");
    EXPECT_EQ(second->createChildname("x"), "x\x1ESame/Key1");
}

TEST(VCreatorBase, ManyStandInOneDomain)
{
    constexpr int kMany = 1000;
    std::vector<std::unique_ptr<Registered<TestCreator>>> creators;
    for (int number = 0; number < kMany; ++number)
        creators.push_back(std::make_unique<Registered<TestCreator>>(
            new TestCreator("Many/C" + std::to_string(number))));
    int found = 0;
    for (int number = 0; number < kMany; ++number)
        if (VManagedObject::find(typeid(VInputCreatorBase), "Many/C" + std::to_string(number)))
            ++found;

    EXPECT_EQ(found, kMany);
}

} // namespace
} // namespace Quorl
