#include <tests/support/FileBytes.h>
#include <tests/support/ProgramFixture.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace Geoid
{
namespace
{

using QuorlTest::bytesOf;
using QuorlTest::writeBytes;

const std::filesystem::path kRealGrid = "/usr/share/proj/egm96_15.gtx";

struct GeoidProgram : QuorlTest::ProgramFixture
{
    /// Runs the program with these words of a command line.
    void run(const std::string& arguments)
    {
        runCommand(std::string(GEOID_PROGRAM) + " " + arguments);
    }

    /// Runs it on a grid and expects one clear line, and nothing written.
    void expectComplaint(const std::filesystem::path& input, const std::string& words)
    {
        run("--width 64 --input '" + input.string() + "' --output " + folder.path().string());
        EXPECT_EQ(status, 1) << words;
        EXPECT_EQ(err.substr(0, 7), "geoid: ");
        EXPECT_NE(err.find(words), std::string::npos) << err;
        EXPECT_EQ(err.find('\n'), err.size() - 1) << "one line: " << err;
        EXPECT_EQ(folder.count(), 0U);
    }

    QuorlTest::TemporaryFolder folder;
    QuorlTest::TemporaryFolder notes;
    std::string grid = bytesOf(kRealGrid);
};

TEST_F(GeoidProgram, DrawsBothPicturesAndItsFactsHold)
{
    run("--width 160 --output " + folder.path().string());

    EXPECT_EQ(status, 0);
    EXPECT_EQ(err, "");
    EXPECT_NE(out.find("All facts hold.\n"), std::string::npos) << out;
    EXPECT_EQ(out.find("BROKEN"), std::string::npos);
    EXPECT_EQ(folder.count(), 2U);
    for (const char* name : {"world.png", "india.png"})
        EXPECT_EQ(bytesOf(folder / name).substr(1, 3), "PNG") << name;
}

TEST_F(GeoidProgram, DrawsTheSamePicturesEachTime)
{
    run("--width 160 --output " + folder.path().string());
    const std::string world = bytesOf(folder / "world.png");
    const std::string india = bytesOf(folder / "india.png");
    run("--width 160 --output " + folder.path().string());

    EXPECT_EQ(bytesOf(folder / "world.png"), world);
    EXPECT_EQ(bytesOf(folder / "india.png"), india);
    EXPECT_EQ(folder.count(), 2U);
}

TEST_F(GeoidProgram, TellsItsWalksIfAsked)
{
    run("--width 64 --verbosity 1 --output " + folder.path().string());

    EXPECT_EQ(status, 0);
    EXPECT_NE(out.find(">>> \tVObject: picture::request("), std::string::npos);
}

TEST_F(GeoidProgram, ComplainsOfInputThatIsNoGrid)
{
    expectComplaint(notes / "missing.gtx", "missing.gtx");
    expectComplaint(notes.path(), "directory");
    writeBytes(notes / "short.gtx", grid.substr(0, 1000));
    expectComplaint(notes / "short.gtx", "short.gtx");
    writeBytes(notes / "empty.gtx", "");
    expectComplaint(notes / "empty.gtx", "empty.gtx");
}

TEST_F(GeoidProgram, ComplainsOfAHeaderWithAbsurdCounts)
{
    std::string bytes = grid;
    bytes.replace(32, 8, "\x7F\xFF\xFF\xFF\x7F\xFF\xFF\xFF");
    writeBytes(notes / "absurd.gtx", bytes);

    expectComplaint(notes / "absurd.gtx", "absurd.gtx");
}

TEST_F(GeoidProgram, ComplainsOfHeightsThatAreNoNumbers)
{
    std::string bytes = grid;
    bytes.replace(40 + 4 * 5000, 4, "\x7F\xC0\x01\x02");
    writeBytes(notes / "nan.gtx", bytes);

    expectComplaint(notes / "nan.gtx", "nan.gtx");
}

TEST_F(GeoidProgram, ComplainsOfAnOutputThatCannotBeWritten)
{
    const auto complainsOf = [&](const std::filesystem::path& output) {
        run("--width 64 --output '" + output.string() + "'");
        EXPECT_EQ(status, 1);
        EXPECT_EQ(err.substr(0, 7), "geoid: ");
        EXPECT_EQ(err.find('\n'), err.size() - 1) << err;
    };
    complainsOf(folder / "missing");
    writeBytes(notes / "file", "x");
    complainsOf(notes / "file");
    std::filesystem::create_directory(folder / "india.png");
    complainsOf(folder.path());
    EXPECT_EQ(folder.count(), 1U) << "no picture of the world, either";
    complainsOf("/proc");
}

TEST_F(GeoidProgram, OpensFewerModulesOnceItHasACache)
{
    const std::string arguments =
        "--width 64 --output " + folder.path().string() + " --cache " + (notes / "cache").string();
    run(arguments);
    EXPECT_EQ(status, 0);
    EXPECT_NE(out.find("\nModules: 6 files, of which 6 were opened.\n"), std::string::npos) << out;
    const std::string cache = bytesOf(notes / "cache");
    run(arguments);
    EXPECT_EQ(status, 0);
    EXPECT_NE(out.find("\nModules: 6 files, of which 2 were opened.\n"), std::string::npos) << out;
    EXPECT_NE(out.find("All facts hold.\n"), std::string::npos);
    EXPECT_EQ(bytesOf(notes / "cache"), cache) << "it still covers all modules";

    writeBytes(notes / "cache", cache.substr(0, cache.size() / 2));
    run(arguments);
    EXPECT_EQ(status, 0);
    EXPECT_NE(out.find("All facts hold.\n"), std::string::npos) << "a cache that is cut";
}

TEST_F(GeoidProgram, ComplainsOfAFolderWithoutModules)
{
    run("--width 64 --modules " + notes.path().string() + " --output " + folder.path().string());
    EXPECT_EQ(status, 1);
    EXPECT_NE(err.find("there are no modules"), std::string::npos) << err;
    run("--width 64 --cache /proc/cache --output " + folder.path().string());
    EXPECT_EQ(status, 1);
    EXPECT_NE(err.find("the cache cannot be written"), std::string::npos) << err;
    EXPECT_EQ(folder.count(), 0U);
}

TEST_F(GeoidProgram, ComplainsOfWrongOptions)
{
    for (const char* arguments :
         {"--colour", "--width 1", "--width many", "--verbosity -1", "extra"})
    {
        run(arguments);
        EXPECT_EQ(status, 2) << arguments;
        EXPECT_EQ(err.substr(0, 7), "geoid: ");
        EXPECT_EQ(err.find('\n'), err.size() - 1) << err;
        EXPECT_EQ(out, "");
    }
}

TEST_F(GeoidProgram, ExplainsItself)
{
    run("--help");

    EXPECT_EQ(status, 0);
    EXPECT_EQ(err, "");
    for (const char* word :
         {"--input", "--output", "--modules", "--cache", "--width", "--verbosity", "--help", "GTX"})
        EXPECT_NE(out.find(word), std::string::npos) << word;
}

} // namespace
} // namespace Geoid
