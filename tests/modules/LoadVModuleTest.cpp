#include <tests/modules/ModuleFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

namespace Quorl
{
namespace
{

using QuorlTest::outputOf;
using testing::ElementsAre;

using LoadVModuleTest = QuorlTest::ModuleFolder;

/// Loads a module that cannot be loaded, and checks that this is told everywhere.
/// \return the error text.
string failureOf(const string& path, string (*readFile)(const string&))
{
    std::filesystem::remove("ZelmError.log");
    bool answer = true;
    EXPECT_EQ(outputOf([&] { answer = LoadVModule(path); }),
              "Loading Library [" + path + "] failed ;-(, see ZelmError.log for details.\n");
    EXPECT_FALSE(answer);
    EXPECT_TRUE(VModules::isLoadable(path)) << "it is not in the table";
    const string log = readFile("ZelmError.log");
    EXPECT_TRUE(log.ends_with('\n'));
    return log.substr(0, log.size() - 1);
}

TEST_F(LoadVModuleTest, RegistersItsCreatorsUnderItsPath)
{
    const string path = add("version1", "plugins/versioned.zelm");
    bool answer = false;
    EXPECT_EQ(outputOf([&] { answer = LoadVModule(path); }), "");

    EXPECT_TRUE(answer);
    ASSERT_TRUE(creator("Versioned/Answering"));
    EXPECT_EQ(creator("Versioned/Answering")->getLoadModule(), path);
    EXPECT_EQ(creator("Versioned/Quiet")->getLoadModule(), path);
    EXPECT_EQ(answerOf("Versioned/Answering"), "1");
    EXPECT_EQ(VManagedObject::CurrentLoadModule, "");
    EXPECT_FALSE(VModules::isLoadable(path));
    EXPECT_FALSE(std::filesystem::exists("ZelmError.log"));
    EXPECT_TRUE(asked().empty());
}

TEST_F(LoadVModuleTest, RegistersUnderItsPathWhatFollowsALoadOfAnother)
{
    const string other = add("version1", "versioned.zelm");
    const string path = add("leading", "leading.zelm");

    EXPECT_EQ(outputOf([&] { EXPECT_TRUE(LoadVModule(path)); }), "");

    ASSERT_TRUE(creator("Leading/Leading"));
    EXPECT_EQ(creator("Leading/Leading")->getLoadModule(), path);
    EXPECT_EQ(creator("Versioned/Answering")->getLoadModule(), other);
    EXPECT_EQ(VManagedObject::CurrentLoadModule, "");
}

TEST_F(LoadVModuleTest, KeepsWhatItKnowsOfAModule)
{
    const string path = add("version1", "versioned.zelm");
    LoadVModule(path);
    const RefPtr<VModule> module = VModules::find(path);

    ASSERT_TRUE(module);
    EXPECT_TRUE(module->isValid());
    EXPECT_EQ(module->path, path);
    EXPECT_TRUE(module->sourceInfo.ends_with("tests/modules/files")) << module->sourceInfo;
    EXPECT_EQ(module->errorText, "No error on module " + path);
    EXPECT_FALSE(module->fileInfo.invalid);
    EXPECT_TRUE(module->getFunction("ZELM_API_2017_AUG_07__versioned"));
    EXPECT_EQ(module->getFunction("printf"), nullptr) << "of a library that it needs";
    EXPECT_EQ(module->getFunction("no such function"), nullptr);
}

TEST_F(LoadVModuleTest, RunsNoCodeOfAModuleWithAnotherWord)
{
    const string path = add("wrongword", "wrongword.zelm");
    EXPECT_EQ(failureOf(path, &read),
              "Incompatible Plugin! Found: ZELM_API_2001_JAN_01, but need to have: "
              "ZELM_API_2017_AUG_07. The required plugin needs to be recompiled.\n"
              "\nThe plugin was created from [some/where].\n\nDo \"make -C some/where\" in the "
              "Zelm directory to recompile.\n");

    EXPECT_FALSE(std::filesystem::exists("wrongword-has-run"));
    EXPECT_EQ(VManagedObject::CurrentLoadModule, path) << "left until the next load";
}

TEST_F(LoadVModuleTest, SaysThatItDoesNotKnowWhereTheSourceIs)
{
    EXPECT_EQ(failureOf(add("wrongwordnowhere", "wrongword.zelm"), &read),
              "Incompatible Plugin! Found: ZELM_API_2001_JAN_01, but need to have: "
              "ZELM_API_2017_AUG_07. The required plugin needs to be recompiled.\n"
              "\n(No source code information available.)\n");
    EXPECT_FALSE(std::filesystem::exists("wrongword-has-run"));
}

TEST_F(LoadVModuleTest, NeedsTheTextsOfAModule)
{
    const string path = add("nonote", "nonote.zelm");
    EXPECT_EQ(failureOf(path, &read), "No Zelm version resource information available.\n");
    EXPECT_EQ(VManagedObject::CurrentLoadModule, path);
}

TEST_F(LoadVModuleTest, NeedsTheWordAmongTheTexts)
{
    const string path = add("noword", "noword.zelm");
    EXPECT_EQ(failureOf(path, &read), "Could not load version string resource.\n");
    EXPECT_EQ(VManagedObject::CurrentLoadModule, path);
}

string systemFailure(const string& path, const string& reason)
{
    return "Error while loading Zelm plugin\n " + path + " \n\nThe problem is that \"" + reason +
           "\"\n";
}

TEST_F(LoadVModuleTest, TellsTheSystemsReason)
{
    EXPECT_EQ(failureOf("absent.zelm", &read),
              systemFailure("absent.zelm", "No such file or directory"));
    EXPECT_EQ(VManagedObject::CurrentLoadModule, "") << "cleared in this failure";
    write("text.zelm", "this is no library");
    EXPECT_EQ(failureOf("text.zelm", &read), systemFailure("text.zelm", "Exec format error"));
    std::filesystem::create_directory("folder.zelm");
    EXPECT_EQ(failureOf("folder.zelm", &read), systemFailure("folder.zelm", "Is a directory"));
    std::filesystem::create_symlink("nowhere", "dangling.zelm");
    EXPECT_EQ(failureOf("dangling.zelm", &read),
              systemFailure("dangling.zelm", "No such file or directory"));
    EXPECT_EQ(failureOf("", &read), systemFailure("", "No such file or directory"));
    if (::geteuid() == 0) return; // who may read everything
    write("unreadable.zelm", "x");
    std::filesystem::permissions("unreadable.zelm", std::filesystem::perms::none);
    EXPECT_EQ(failureOf("unreadable.zelm", &read),
              systemFailure("unreadable.zelm", "Permission denied"));
}

TEST_F(LoadVModuleTest, TellsTheLoadersReason)
{
    const string path = add("unresolved", "unresolved.zelm");
    const string text = failureOf(path, &read);

    EXPECT_THAT(text, testing::HasSubstr("undefined symbol: symbolOfNobody"));
    EXPECT_TRUE(text.starts_with("Error while loading Zelm plugin\n unresolved.zelm \n\nThe "
                                 "problem is that \""));
    EXPECT_TRUE(text.ends_with("\"\n"));
}

TEST_F(LoadVModuleTest, IsCutAtAnyLengthWithoutHarm)
{
    const string path = add("version1", "whole.zelm");
    const string whole = read(path);
    for (std::size_t length = 0; length < whole.size(); length += 1024)
    {
        write("cut.zelm", whole.substr(0, length));
        outputOf([&] { EXPECT_FALSE(LoadVModule("cut.zelm")) << length; });
    }
    EXPECT_FALSE(creator("Versioned/Answering"));
}

TEST_F(LoadVModuleTest, AppendsToTheLogAndAsks)
{
    outputOf([&] {
        LoadVModule("a.zelm");
        LoadVModule("b.zelm");
    });
    const string a = systemFailure("a.zelm", "No such file or directory");
    const string b = systemFailure("b.zelm", "No such file or directory");

    EXPECT_EQ(read("ZelmError.log"), a + "\n" + b + "\n");
    ASSERT_EQ(asked().size(), 2U);
    EXPECT_EQ(asked()[0].caption, "Error loading a.zelm");
    EXPECT_EQ(asked()[0].text,
              a + "\nPress [Abort] to quit Zelm, [Ignore All] to ignore all possible forthcoming "
                  "loading errors in the future, [Ignore] to proceed loading the next Zelm "
                  "plugin.");
}

TEST_F(LoadVModuleTest, GoesOnIfTheLogCannotBeWritten)
{
    std::filesystem::create_directory("ZelmError.log");
    outputOf([&] { EXPECT_FALSE(LoadVModule("a.zelm")); });
    EXPECT_EQ(asked().size(), 1U);
}

TEST_F(LoadVModuleTest, EndsTheProcessWhenToldTo)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    answer() = 3;
    EXPECT_EXIT(LoadVModule("a.zelm"), testing::ExitedWithCode(1), "");
}

TEST_F(LoadVModuleTest, AsksNoMoreWhenToldSo)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            answer() = 4;
            LoadVModule("a.zelm");
            LoadVModule("b.zelm");
            std::exit(asked().size() == 1 && read("ZelmError.log").size() > 100 ? 17 : 1);
        },
        testing::ExitedWithCode(17), "");
}

TEST_F(LoadVModuleTest, AsksNobodyWithoutATerminal)
{
    VModules::setErrorDialog(nullptr);
    EXPECT_EQ(
        QuorlTest::errorOutputOf([] { outputOf([] { EXPECT_FALSE(LoadVModule("a.zelm")); }); }),
        "");
}

TEST_F(LoadVModuleTest, NamesTheRoutineByTheStem)
{
    const string path = add("dotted", "a.b.zelm");
    EXPECT_TRUE(LoadVModule(path));
    EXPECT_TRUE(VModules::find(path)->getFunction("ZELM_API_2017_AUG_07__a.b"));
    EXPECT_TRUE(creator("Dotted/A"));
}

TEST_F(LoadVModuleTest, TakesAModuleWithoutInitRoutineWithAWarning)
{
    const string path = add("noinit", "x/noinit.zelm");
    bool answer = false;
    EXPECT_EQ(outputOf([&] { answer = LoadVModule(path); }),
              "WARNING: (Windows) Module has NO init routine ZELM_API_2017_AUG_07__noinit...\n");

    EXPECT_TRUE(answer);
    EXPECT_FALSE(VModules::isLoadable(path));
    EXPECT_TRUE(creator("NoInit/A"));
}

TEST_F(LoadVModuleTest, FindsNoRoutineOfAnotherStem)
{
    const string path = add("version1", "renamed.zelm");
    EXPECT_EQ(outputOf([&] { EXPECT_TRUE(LoadVModule(path)); }),
              "WARNING: (Windows) Module has NO init routine ZELM_API_2017_AUG_07__renamed...\n");
}

TEST_F(LoadVModuleTest, RenamesAModuleWithoutInitRoutineIfItIsStrict)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            ::setenv("ZELM_STRICT_LOADING", "", 1);
            const string path = add("noinit", "noinit.zelm");
            bool answer = true;
            const string printed = outputOf([&] { answer = LoadVModule(path); });
            const bool isRenamed =
                !std::filesystem::exists(path) && std::filesystem::exists("noinit.zelm-noinit");
            const bool isSaid = printed == "ERROR: (win) Module [noinit.zelm] has NO init routine "
                                           "ZELM_API_2017_AUG_07__noinit...\n";
            const bool isGone = VModules::isLoadable(path) && !creator("NoInit/A");
            ::unsetenv("ZELM_STRICT_LOADING"); // it is looked at once
            add("noinit", "again.zelm");
            outputOf([&] { answer = answer || LoadVModule("again.zelm"); });
            const bool isRenamedAgain = std::filesystem::exists("again.zelm-noinit");
            std::exit(!answer && isRenamed && isSaid && isGone && isRenamedAgain ? 17 : 1);
        },
        testing::ExitedWithCode(17), "");
}

TEST_F(LoadVModuleTest, KeepsAFileThatHasTheNewNameAlready)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            ::setenv("ZELM_STRICT_LOADING", "1", 1);
            const string path = add("noinit", "noinit.zelm");
            write("noinit.zelm-noinit", "precious");
            outputOf([&] { LoadVModule(path); });
            std::exit(
                read("noinit.zelm-noinit") == "precious" && std::filesystem::exists(path) ? 17 : 1);
        },
        testing::ExitedWithCode(17), "");
}

TEST_F(LoadVModuleTest, LetsARefusingModuleGoSilently)
{
    for (const char* module : {"refusing", "incompatible", "throwing"})
    {
        const string path = add(module, string(module) + ".zelm");
        EXPECT_EQ(outputOf([&] { EXPECT_FALSE(LoadVModule(path)); }), "") << module;
        EXPECT_TRUE(VModules::isLoadable(path)) << module;
        const string key = string("Refusing/") + module;
        const auto& domain = *VCreators(typeid(VInputCreatorBase));
        ASSERT_TRUE(domain.contains(key)) << "what it registered stays in the registry";
        EXPECT_FALSE(domain.liveCreator(key)) << "but ended with it";
    }
    EXPECT_FALSE(std::filesystem::exists("ZelmError.log"));
    EXPECT_TRUE(asked().empty());
}

TEST_F(LoadVModuleTest, LoadsTheSameFileTwiceWithoutRunningItTwice)
{
    const string path = add("version1", "versioned.zelm");
    EXPECT_TRUE(LoadVModule(path));
    EXPECT_TRUE(LoadVModule(path));

    EXPECT_FALSE(creator("Versioned/Answering1"));
    EXPECT_TRUE(creator("Versioned/Answering"));
}

TEST_F(LoadVModuleTest, KeepsTheCreatorsOfAModuleThatRefusesOnlyTheSecondTime)
{
    const string path = add("fickle", "fickle.zelm");
    EXPECT_TRUE(LoadVModule(path));
    EXPECT_FALSE(LoadVModule(path));
    EXPECT_TRUE(VModules::find(path));
    EXPECT_TRUE(creator("Refusing/fickle"));
}

} // namespace
} // namespace Quorl
