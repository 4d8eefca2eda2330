#include <quorl/platform/SharedLibrary.h>
#include <tests/support/TemporaryFolder.h>
#include <tests/support/WorkingDirectory.h>

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

namespace Tolmen::Platform
{
namespace
{

const char* const kSymbol = "answer"; // of the library

TEST(SharedLibrary, TellsWhyItIsNotLoaded)
{
    const SharedLibrary nothing("");
    EXPECT_FALSE(nothing.isLoaded());
    EXPECT_EQ(nothing.error(), "No such file or directory");
    EXPECT_EQ(nothing.symbol("main"), nullptr);
    EXPECT_FALSE(SharedLibrary("/absent/library").error().empty());
}

/// The file of a library, which a test may replace and remove.
struct SharedLibraryFile : testing::Test
{
    SharedLibraryFile() { put(); }

    /// Beside the old one and over it, so that what is loaded keeps its file.
    void put() const
    {
        const std::filesystem::path built(TEST_MODULES);
        std::filesystem::copy_file(built / "nonote" / "nonote.zelm", path + ".new");
        std::filesystem::rename(path + ".new", path);
    }

    const QuorlTest::TemporaryFolder folder;
    const std::string path = folder / "library.zelm";
};

TEST_F(SharedLibraryFile, IsLoadedFromHereIfItIsNamedWithoutAPath)
{
    const QuorlTest::WorkingDirectory here(folder.path());
    const SharedLibrary library("library.zelm");

    EXPECT_EQ(library.error(), "");
    EXPECT_TRUE(library.symbol(kSymbol));
}

TEST_F(SharedLibraryFile, IsMappedAsItIsOnceTheEarlierOneIsLeftBehind)
{
    SharedLibrary earlier(path);
    ASSERT_TRUE(earlier.isLoaded());
    EXPECT_EQ(SharedLibrary(path).symbol(kSymbol), earlier.symbol(kSymbol)) << "the same one";
    put();
    earlier.leaveBehind();

    const SharedLibrary later(path);
    ASSERT_TRUE(later.isLoaded());
    EXPECT_NE(later.symbol(kSymbol), earlier.symbol(kSymbol));

    earlier.leaveBehind(); // which it is already
    EXPECT_EQ(SharedLibrary(path).symbol(kSymbol), later.symbol(kSymbol));
}

TEST_F(SharedLibraryFile, IsRefusedIfItCannotBeCopiedBesideTheOneThatIsStillMapped)
{
    SharedLibrary earlier(path);
    earlier.leaveBehind();
    std::filesystem::remove(path);
    {
        const SharedLibrary later(path);
        EXPECT_FALSE(later.isLoaded()) << "the earlier one, whose initialisers would not run";
        EXPECT_EQ(later.error(), "No such file or directory");
    }

    put();
    const SharedLibrary latest(path);
    ASSERT_TRUE(latest.isLoaded()) << latest.error();
    EXPECT_NE(latest.symbol(kSymbol), earlier.symbol(kSymbol));
}

TEST_F(SharedLibraryFile, IsNotLeftBehindIfItWasNeverLoaded)
{
    SharedLibrary nothing(folder / "absent.zelm");
    nothing.leaveBehind();
    EXPECT_FALSE(nothing.isLoaded());
    EXPECT_FALSE(nothing.error().empty());
}

TEST_F(SharedLibraryFile, StaysTheSameUnderASecondPathWhenTheFirstOwnerEnds)
{
    const SharedLibrary second(folder / "./library.zelm");
    const void* const before = second.symbol(kSymbol);
    {
        const SharedLibrary first(path);
        EXPECT_EQ(first.symbol(kSymbol), before);
    }

    EXPECT_EQ(SharedLibrary(path).symbol(kSymbol), before) << "not a copy";
}

TEST_F(SharedLibraryFile, StaysTheSameForItsPathUntilTheLastOwnerEnds)
{
    auto first = std::make_unique<SharedLibrary>(path);
    const SharedLibrary second(path);
    first.reset();

    EXPECT_EQ(SharedLibrary(path).symbol(kSymbol), second.symbol(kSymbol)) << "not a copy";
}

TEST_F(SharedLibraryFile, IsMappedOnceMoreForThePathThatItWasFirstMappedFor)
{
    auto first = std::make_unique<SharedLibrary>(path);
    const SharedLibrary second(folder / "./library.zelm");
    const void* const before = second.symbol(kSymbol);
    first.reset();

    EXPECT_NE(SharedLibrary(path).symbol(kSymbol), before) << "what runs at first has to run again";
}

TEST(IsCode, KnowsFunctionsByWhereTheyBegin)
{
    const QuorlTest::TemporaryFolder folder;
    const SharedLibrary library(
        (std::filesystem::path(TEST_MODULES) / "nonote" / "nonote.zelm").string());
    const char* const function = static_cast<const char*>(library.symbol(kSymbol));
    ASSERT_TRUE(function);

    EXPECT_TRUE(isCode(function));
    EXPECT_FALSE(isCode(function + 1)) << "nothing begins there";
    EXPECT_FALSE(isCode(::environ)) << "on the heap or on the stack";
    EXPECT_FALSE(isCode(&::environ)) << "data with a name";
    EXPECT_FALSE(isCode(nullptr));
}

} // namespace
} // namespace Tolmen::Platform
