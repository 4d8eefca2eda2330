#include <quorl/foundation/StringFile.h>
#include <quorl/foundation/Typename.h>
#include <quorl/modules/VCreatorCache.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <tests/modules/ModuleFolder.h>
#include <tests/support/EmptyDomain.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace Quorl
{
namespace
{

using QuorlTest::outputOf;
using testing::HasSubstr;
using testing::Not;

/// The bytes of a cache file, item by item.
class CacheBytes
{
public:
    CacheBytes& number64(std::uint64_t number) { return little(number, 8); }
    CacheBytes& number32(std::int32_t number)
    {
        return little(static_cast<std::uint32_t>(number), 4);
    }
    CacheBytes& text(const string& text)
    {
        number64(text.size());
        bytes_ += text;
        return *this;
    }
    /// An entry as it is written for a file that is there.
    CacheBytes& entry(const string& name, const string& module)
    {
        struct stat status = {};
        ::stat(module.c_str(), &status);
        return text(name)
            .text(module)
            .number32(static_cast<std::int32_t>(status.st_size))
            .number64(static_cast<std::uint64_t>(status.st_mtime));
    }
    const string& bytes() const { return bytes_; }

private:
    CacheBytes& little(std::uint64_t number, int count)
    {
        for (; count > 0; --count, number >>= 8) bytes_ += static_cast<char>(number & 0xFF);
        return *this;
    }
    string bytes_;
};

const char* const kCreators = "Quorl::VInputCreatorBase";

/// A domain of the tests alone, so that its part of a file is known.
struct CacheDomain
{
    struct Item final : VManagedDomainObject<CacheDomain>
    {
        Item(const string& wantedName, int givenPriority) { insert(wantedName, givenPriority); }
    };

    static VCreatorMap& map() { return *VCreators(typeid(CacheDomain)); }
    static string name() { return Tolmen::Typename(typeid(CacheDomain)); }
};

struct VCreatorCache : QuorlTest::ModuleFolder
{
    ~VCreatorCache() override { QuorlTest::emptyDomain(typeid(CacheDomain)); }

    /// \return what is printed.
    static string load(const string& bytes)
    {
        write("cache", bytes);
        return outputOf([] { EXPECT_TRUE(LoadVCreatorMapTypes("cache")); });
    }

    static string save()
    {
        return outputOf([] { EXPECT_TRUE(SaveVCreatorMapTypes("cache")); });
    }
};

TEST_F(VCreatorCache, NeedsAFileThatCanBeOpened)
{
    EXPECT_EQ(outputOf([] {
                  EXPECT_FALSE(LoadVCreatorMapTypes("absent"));
                  EXPECT_FALSE(SaveVCreatorMapTypes("absent/cache"));
              }),
              "");
}

TEST_F(VCreatorCache, WritesEachDomainByteByByte)
{
    write("m.zelm", "12345");
    VManagedObject::CurrentLoadModule = "m.zelm";
    new CacheDomain::Item("b", 7);
    new CacheDomain::Item("a", -1);
    VManagedObject::CurrentLoadModule = "gone.zelm";
    new CacheDomain::Item("c", 7);
    VManagedObject::CurrentLoadModule.clear();
    CacheDomain::map()["empty"] = RefPtr<VCreatorBaseInfo>();
    const string printed = save();

    const string expected = CacheBytes()
                                .text(CacheDomain::name())
                                .number64(3)
                                .number32(-1)
                                .text("a")
                                .number32(7)
                                .text("b")
                                .number32(7)
                                .text("c")
                                .number64(4) // with the empty one, of which nothing is written
                                .entry("a", "m.zelm")
                                .entry("b", "m.zelm")
                                .number64(0) // of a module that is not there
                                .number64(0)
                                .bytes();
    const string file = read("cache");
    EXPECT_THAT(file, HasSubstr(expected));
    EXPECT_EQ(file.substr(0, 8), CacheBytes().number64(VCreatorTypes().size()).bytes());
    EXPECT_THAT(printed, HasSubstr("** MODULE CACHE REGISTRY FOR DOMAIN [" + CacheDomain::name() +
                                   "] ***\nMODULE [gone.zelm] DOES NOT EXIST\n"));
}

TEST_F(VCreatorCache, EntersWhatCanBeLoadedLater)
{
    const string path = add("version1", "p/versioned.zelm");
    EXPECT_EQ(load(CacheBytes()
                       .number64(1)
                       .text(kCreators)
                       .number64(1)
                       .number32(3)
                       .text("Versioned/Answering")
                       .number64(2)
                       .entry("Versioned/Answering", path)
                       .entry("Versioned/Quiet", path)
                       .bytes()),
              "TypeEntries: 1\n"
              "Investigating [Quorl::VInputCreatorBase]\n"
              "  CACHING CREATORS FOR DOMAIN [Quorl::VInputCreatorBase]\n"
              "Priorities: 1\n"
              "Creators: 2\n");

    EXPECT_FALSE(VModules::find(path)) << "nothing is loaded";
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(openModules("p"), 1); }),
              " SKIP loading of p/versioned.zelm\n");
    const int visits = VManagedObject::iterate(
        typeid(VInputCreatorBase), [](int, const RefPtr<VManagedObject>&, const string& name) {
            EXPECT_NE(name, "Versioned/Quiet") << "not by priority";
            return true;
        });
    EXPECT_EQ(VManagedObject::size(typeid(VInputCreatorBase)), visits + 2);

    string answer;
    EXPECT_EQ(outputOf([&] { answer = answerOf("Versioned/Answering"); }),
              "VCreatorBaseInfo: No Creator, need to load [p/versioned.zelm]\n");
    EXPECT_EQ(answer, "1");
    EXPECT_TRUE(VModules::find(path));
}

TEST_F(VCreatorCache, ComesBackFromAFileThatItWrote)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    ASSERT_TRUE(creator("Versioned/Quiet"));
    save();
    const string printed = outputOf([&] { LoadVCreatorMapTypes("cache"); });
    for (const char* word : {"Info:", "SKIP", "CACHED MODULE"})
        EXPECT_EQ(printed.find(word), string::npos)
            << "what is live and has the same path is passed over silently: " << printed;
}

TEST_F(VCreatorCache, TakesAnEmptyFile)
{
    EXPECT_EQ(load(CacheBytes().number64(0).bytes()), "TypeEntries: 0\n");
    EXPECT_EQ(load(""), "TypeEntries: 0\n");
}

/// A file with one entry of the creators' domain.
string oneEntry(const string& name, const string& module, std::int32_t size, std::int64_t time)
{
    return CacheBytes()
        .number64(1)
        .text(kCreators)
        .number64(0)
        .number64(1)
        .text(name)
        .text(module)
        .number32(size)
        .number64(static_cast<std::uint64_t>(time))
        .bytes();
}

const string kHead = "TypeEntries: 1\nInvestigating [Quorl::VInputCreatorBase]\n"
                     "  CACHING CREATORS FOR DOMAIN [Quorl::VInputCreatorBase]\nPriorities: 0\n"
                     "Creators: 1\n";

TEST_F(VCreatorCache, PassesOverModulesThatHaveChanged)
{
    write("m.zelm", "12345");
    struct stat status = {};
    ::stat("m.zelm", &status);
    EXPECT_EQ(load(oneEntry("Cached/X", "gone.zelm", 5, status.st_mtime)),
              kHead + "  CACHED MODULE [gone.zelm] DOES NOT EXIST\n");
    EXPECT_EQ(load(oneEntry("Cached/X", "m.zelm", 4, status.st_mtime)),
              kHead + "  CACHED MODULE [m.zelm] HAS DIFFERENT SIZE FROM CACHE, NOT USED\n");
    for (const int difference : {-1, 1})
        EXPECT_EQ(load(oneEntry("Cached/X", "m.zelm", 5, status.st_mtime + difference)),
                  kHead + "  CACHED MODULE [m.zelm] HAS DIFFERENT MODIFICATION TIME FROM CACHE, "
                          "NOT USED\n");
    EXPECT_FALSE(VCreators(typeid(VInputCreatorBase))->contains("Cached/X"));
    EXPECT_TRUE(VModules::isLoadable("m.zelm"));
    EXPECT_EQ(load(oneEntry("Cached/X", "m.zelm", 5, status.st_mtime)), kHead);
    EXPECT_FALSE(VModules::isLoadable("m.zelm"));
}

TEST_F(VCreatorCache, GoesOnBehindModulesThatHaveChanged)
{
    write("m.zelm", "12345");
    load(CacheBytes()
             .number64(1)
             .text(kCreators)
             .number64(0)
             .number64(2)
             .entry("Cached/Y", "gone.zelm")
             .entry("Cached/Z", "m.zelm")
             .bytes());
    EXPECT_FALSE(VCreators(typeid(VInputCreatorBase))->contains("Cached/Y"));
    EXPECT_TRUE(VCreators(typeid(VInputCreatorBase))->contains("Cached/Z"));
}

TEST_F(VCreatorCache, ATouchedModuleIsLoadedByTheScan)
{
    const string path = add("version1", "p/versioned.zelm");
    const string bytes = CacheBytes()
                             .number64(1)
                             .text(kCreators)
                             .number64(0)
                             .number64(1)
                             .entry("Versioned/Quiet", path)
                             .bytes();
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) +
                                               std::chrono::hours(1));
    EXPECT_EQ(load(bytes), kHead + "  CACHED MODULE [p/versioned.zelm] HAS DIFFERENT MODIFICATION "
                                   "TIME FROM CACHE, NOT USED\n");
    EXPECT_EQ(outputOf([&] { openModules("p"); }), "");
    EXPECT_TRUE(VModules::find(path));
}

TEST_F(VCreatorCache, NeverMakesADomain)
{
    write("m.zelm", "12345");
    const std::size_t before = VCreatorTypes().size();
    EXPECT_EQ(load(CacheBytes()
                       .number64(1)
                       .text("Unknown")
                       .number64(0)
                       .number64(1)
                       .entry("X", "m.zelm")
                       .bytes()),
              "TypeEntries: 1\nInvestigating [Unknown]\nPriorities: 0\nCreators: 1\n"
              "  Info: No Creator Caching for domain [Unknown] is possible.\n");
    EXPECT_EQ(VCreatorTypes().size(), before);
}

TEST_F(VCreatorCache, PassesOverNamesThatAreThereFromElsewhere)
{
    write("m.zelm", "12345");
    VManagedObject::CurrentLoadModule = "first.zelm";
    new CacheDomain::Item("x", 0);
    VManagedObject::CurrentLoadModule.clear();
    const string bytes = CacheBytes()
                             .number64(1)
                             .text(CacheDomain::name())
                             .number64(0)
                             .number64(1)
                             .entry("x", "m.zelm")
                             .bytes();
    EXPECT_THAT(load(bytes), HasSubstr(" Info: A creator already exists for [x] from [first.zelm], "
                                       "cache is not used for [m.zelm]\n"));
    EXPECT_TRUE(VModules::isLoadable("m.zelm")) << "it was not made known";
    EXPECT_EQ(CacheDomain::map()["x"]->ModuleName, "first.zelm");
}

TEST_F(VCreatorCache, LeavesAnEmptyEntryForAModuleThatIsLoaded)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    const int size = VManagedObject::size(typeid(VInputCreatorBase));
    EXPECT_EQ(load(CacheBytes()
                       .number64(1)
                       .text(kCreators)
                       .number64(0)
                       .number64(1)
                       .entry("Versioned/Former", path)
                       .bytes()),
              kHead + " Info: A Module for [versioned.zelm] already loaded, and this one should "
                      "take care of [Versioned/Former], cache is not used.\n");
    EXPECT_EQ(VManagedObject::size(typeid(VInputCreatorBase)), size + 1);
    const VCreatorMap& map = *VCreators(typeid(VInputCreatorBase));
    ASSERT_TRUE(map.contains("Versioned/Former"));
    EXPECT_FALSE(map.at("Versioned/Former")) << "there is no record";
    EXPECT_EQ(outputOf([] { EXPECT_FALSE(creator("Versioned/Former")); }), "") << "nothing to load";
}

TEST_F(VCreatorCache, IsReadToItsEndWhateverItsSizeIsSaidToBe)
{
    int ends[2] = {};
    ASSERT_EQ(::pipe(ends), 0);
    string bytes;
    {
        CacheBytes cache;
        cache.number64(1).text(CacheDomain::name()).number64(100);
        for (int priority = 0; priority < 100; ++priority) cache.number32(priority).text("name");
        bytes = cache.number64(1).text("").text("").bytes();
    }
    ASSERT_EQ(::write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    ::close(ends[1]);
    const string path = "/dev/fd/" + std::to_string(ends[0]);
    EXPECT_EQ(outputOf([&] { EXPECT_TRUE(LoadVCreatorMapTypes(path)); }),
              "TypeEntries: 1\nInvestigating [" + CacheDomain::name() +
                  "]\n  CACHING CREATORS FOR DOMAIN [" + CacheDomain::name() +
                  "]\nPriorities: 100\nCreators: 1\n  SKIP 0 [] in []\n");
    ::close(ends[0]);
}

TEST_F(VCreatorCache, IsNotReadForEverFromWhatHasNoEnd)
{
    EXPECT_EQ(outputOf([] { EXPECT_TRUE(LoadVCreatorMapTypes("/dev/zero")); }), "TypeEntries: 0\n");
}

TEST_F(VCreatorCache, LosesStepAtAnEntryWithoutModule)
{
    new CacheDomain::Item("hosted", 0); // by no module
    EXPECT_THAT(save(), HasSubstr("MODULE [] DOES NOT EXIST\n"));
    EXPECT_THAT(outputOf([] { LoadVCreatorMapTypes("cache"); }), HasSubstr("  SKIP "));
    const string bytes = CacheBytes()
                             .number64(2)
                             .text(CacheDomain::name())
                             .number64(0)
                             .number64(3)
                             .number64(0)
                             .number64(0)
                             .text("next") // taken for the name of a domain
                             .number64(0)
                             .number64(0)
                             .bytes();
    EXPECT_EQ(load(bytes), "TypeEntries: 2\nInvestigating [" + CacheDomain::name() +
                               "]\n  CACHING CREATORS FOR DOMAIN [" + CacheDomain::name() +
                               "]\nPriorities: 0\nCreators: 3\n  SKIP 0 [] in []\n"
                               "Investigating [next]\nPriorities: 0\nCreators: 0\n");
}

TEST_F(VCreatorCache, AnswersTrueForAFileThatIsCutAnywhere)
{
    write("m.zelm", "12345");
    const string whole = CacheBytes()
                             .number64(2)
                             .text(CacheDomain::name())
                             .number64(1)
                             .number32(1)
                             .text("x")
                             .number64(1)
                             .entry("x", "m.zelm")
                             .text("Unknown")
                             .number64(0)
                             .number64(0)
                             .bytes();
    for (std::size_t length = 0; length < whole.size(); ++length)
    {
        load(whole.substr(0, length));
        outputOf([] { VManagedObject::remove(typeid(CacheDomain), "x"); });
    }
}

TEST_F(VCreatorCache, DoesNotBelieveNumbersThatTheFileCannotHold)
{
    constexpr std::uint64_t kHuge = std::uint64_t{1} << 60;
    const string printed = load(CacheBytes().number64(kHuge).bytes());
    EXPECT_TRUE(printed.starts_with("TypeEntries: 0\n")) << "the low 32 bits";
    EXPECT_EQ(std::ranges::count(printed, '\n'), 1 + 3 * 65536) << "it does not go on for ever";
    EXPECT_TRUE(load(CacheBytes().number64(1).number64(kHuge).bytes())
                    .ends_with("Investigating []\nPriorities: 0\nCreators: 0\n"));
    EXPECT_TRUE(load(CacheBytes().number64(1).text("d").number64(kHuge).bytes())
                    .ends_with("Priorities: 0\nCreators: 0\n"));
    EXPECT_TRUE(load(CacheBytes().number64(1).text("d").number64(0).number64(kHuge).bytes())
                    .ends_with("Creators: 0\n  SKIP 0 [] in []\n"));
}

TEST_F(VCreatorCache, GoesOnBehindTheEndForAsManyDomainsAsAreTold)
{
    const string printed = load(CacheBytes().number64(1500).bytes());
    EXPECT_TRUE(printed.starts_with("TypeEntries: 1500\n"));
    EXPECT_EQ(std::ranges::count(printed, '\n'), 1 + 3 * 1500);
}

} // namespace
} // namespace Quorl
