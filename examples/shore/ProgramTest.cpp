#include <tests/support/FileBytes.h>
#include <tests/support/ProgramFixture.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

/// The program with threads, with none allowed, and without the module that brings them in.
namespace
{

using testing::HasSubstr;
using testing::Not;

struct ShoreProgram : QuorlTest::ProgramFixture
{
    /// \return the picture.
    std::string draw(const std::string& environment, const std::string& arguments)
    {
        const std::filesystem::path picture = folder / "shore.png";
        std::filesystem::remove(picture);
        runCommand(environment + " " + SHORE_PROGRAM + " --output " + picture.string() + " " +
                   arguments);
        return QuorlTest::bytesOf(picture);
    }

    std::string foldersWithout(const std::string& module) const
    {
        const std::filesystem::path some = folder / "modules";
        std::filesystem::create_directory(some);
        for (const auto& entry : std::filesystem::directory_iterator(SHIPPED_MODULES))
            if (entry.path().filename() != module)
                std::filesystem::create_symlink(entry.path(), some / entry.path().filename());
        return " --modules " + some.string();
    }

    QuorlTest::TemporaryFolder folder;
};

TEST_F(ShoreProgram, DrawsTheSameInTheEndWithAndWithoutThreads)
{
    const std::string threaded = draw("", "--width 160");
    EXPECT_EQ(status, 0) << err;
    EXPECT_EQ(threaded.substr(1, 3), "PNG");
    EXPECT_THAT(out, HasSubstr("Threads: a module brings them in\n"));
    EXPECT_THAT(out, HasSubstr("a finer answer has arrived"));
    EXPECT_THAT(out, HasSubstr("the same again: nothing to do\n"));

    EXPECT_EQ(draw("ZELM_THREADS=0", "--width 160"), threaded);
    EXPECT_EQ(status, 0) << err;
    EXPECT_THAT(out, HasSubstr("a finer answer has arrived"));

    EXPECT_EQ(draw("", "--width 160" + foldersWithout("threads.zelm")), threaded);
    EXPECT_EQ(status, 0) << err;
    EXPECT_THAT(out, HasSubstr("Threads: none\n"));
    EXPECT_THAT(out, Not(HasSubstr("a finer answer has arrived")));
    EXPECT_THAT(out, HasSubstr("Answers from the background: 0\n"));
}

TEST_F(ShoreProgram, AnotherLevelIsAnotherPicture)
{
    const std::string sea = draw("", "--width 64");
    EXPECT_NE(draw("", "--width 64 --level 30"), sea);
    EXPECT_EQ(status, 0) << err;
}

TEST_F(ShoreProgram, ComplainsOfWhatIsMissing)
{
    draw("", "--width 64" + foldersWithout("distance.zelm"));
    EXPECT_EQ(status, 1);
    EXPECT_EQ(err, "shore: there is no creator Grid/Distance\n");
    draw("", "--width 64 --modules /nowhere");
    EXPECT_EQ(status, 1);
    EXPECT_EQ(err, "shore: /nowhere is not a folder\n");
    draw("", "--width 64 --input /nowhere.gtx");
    EXPECT_EQ(status, 1);
    EXPECT_THAT(err, HasSubstr("/nowhere.gtx"));
    draw("", "--width 3");
    EXPECT_EQ(status, 2);
}

} // namespace
