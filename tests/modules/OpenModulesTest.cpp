#include <tests/modules/ModuleFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::outputOf;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<string> announced;

bool announce(const char* path, bool flag)
{
    announced.push_back(string(path) + (flag ? " true" : ""));
    return false; // makes no difference
}

struct OpenModules : QuorlTest::ModuleFolder
{
    OpenModules() { announced.clear(); }
};

TEST_F(OpenModules, LoadsTheFilesOfADirectoryInTheOrderOfTheirNames)
{
    add("version1", "p/versioned.zelm");
    add("other", "p/other.zelm");
    add("dotted", "p/a.b.zelm");
    write("p/readme.txt", "not a module");
    write("p/other.ZELM", "not a module either");
    int count = 0;
    EXPECT_EQ(outputOf([&] { count = openModules("p", &announce); }), "");

    EXPECT_EQ(count, 3);
    EXPECT_THAT(announced, ElementsAre("p/a.b.zelm", "p/other.zelm", "p/versioned.zelm"));
    EXPECT_TRUE(creator("Versioned/Quiet"));
    EXPECT_TRUE(creator("Dotted/A"));
}

TEST_F(OpenModules, PassesOverWhatIsKnownAndCountsItAgain)
{
    add("version1", "p/versioned.zelm");
    add("other", "p/other.zelm");
    EXPECT_EQ(openModules("p"), 2);
    int count = 0;

    EXPECT_EQ(outputOf([&] { count = openModules("p", &announce); }),
              " SKIP loading of p/other.zelm\n SKIP loading of p/versioned.zelm\n");
    EXPECT_EQ(count, 2);
    EXPECT_THAT(announced, IsEmpty());
}

TEST_F(OpenModules, CountsWithoutLoading)
{
    add("version1", "p/versioned.zelm");
    add("other", "p/other.zelm");
    LoadVModule("p/other.zelm");
    int count = 0;

    EXPECT_EQ(outputOf([&] { count = openModules("p", &announce, true); }), "");
    EXPECT_EQ(count, 2);
    EXPECT_THAT(announced, IsEmpty());
    EXPECT_TRUE(VModules::isLoadable("p/versioned.zelm"));
}

TEST_F(OpenModules, CountsWhatCannotBeLoadedAndGoesOn)
{
    write("p/broken.zelm", "no library");
    std::filesystem::create_directory("p/folder.zelm");
    add("version1", "p/versioned.zelm");
    int count = 0;

    EXPECT_EQ(outputOf([&] { count = openModules("p"); }),
              "Loading Library [p/broken.zelm] failed ;-(, see ZelmError.log for details.\n"
              "Loading Library [p/folder.zelm] failed ;-(, see ZelmError.log for details.\n");
    EXPECT_EQ(count, 3);
    EXPECT_TRUE(creator("Versioned/Quiet"));
    EXPECT_EQ(asked().size(), 2U);
}

TEST_F(OpenModules, SaysThatItFoundNothing)
{
    std::filesystem::create_directory("empty");
    for (const char* directory : {"empty", "absent"})
        for (const bool countOnly : {false, true})
        {
            int count = -1;
            EXPECT_EQ(outputOf([&] { count = openModules(directory, nullptr, countOnly); }),
                      string("\n*******\nERROR in searching modules in ") + directory +
                          "\n*******\n\n");
            EXPECT_EQ(count, 0);
        }
}

TEST_F(OpenModules, OpensSubdirectoriesFirstInTheirOrder)
{
    add("version1", "p/z/versioned.zelm");
    add("other", "p/a/other.zelm");
    add("dotted", "p/a.b.zelm");
    add("noinit", "p/unlisted/noinit.zelm");
    const RefPtr<Tolmen::StringList> subdirectories(new Tolmen::StringList);
    subdirectories->push_back("z");
    subdirectories->push_back("a");
    subdirectories->push_back("absent");
    int count = 0;

    EXPECT_EQ(outputOf([&] { count = openModules("p", &announce, false, subdirectories); }),
              "\n*******\nERROR in searching modules in p/absent\n*******\n\n");
    EXPECT_EQ(count, 3);
    EXPECT_THAT(announced, ElementsAre("p/z/versioned.zelm", "p/a/other.zelm", "p/a.b.zelm"));
    EXPECT_EQ(openModules("p", nullptr, true, RefPtr<Tolmen::StringList>(new Tolmen::StringList)),
              1);
}

TEST_F(OpenModules, KeepsTheDirectoryAsItIsWritten)
{
    add("version1", "p/versioned.zelm");
    EXPECT_EQ(openModules("p/", &announce), 1);
    EXPECT_THAT(announced, ElementsAre("p//versioned.zelm"));
    EXPECT_EQ(creator("Versioned/Quiet")->getLoadModule(), "p//versioned.zelm");
    EXPECT_TRUE(VModules::isLoadable("p/versioned.zelm")) << "a path is a text";
}

TEST_F(OpenModules, PassesOverWhatTheCacheHasMadeKnown)
{
    add("version1", "p/versioned.zelm");
    VModules::enableCache("p/versioned.zelm");
    int count = 0;

    EXPECT_EQ(outputOf([&] { count = openModules("p"); }), " SKIP loading of p/versioned.zelm\n");
    EXPECT_EQ(count, 1);
    EXPECT_FALSE(VModules::find("p/versioned.zelm"));
}

} // namespace
} // namespace Quorl
