#include <tests/reliability/modules/FolderOfModules.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <utility>

/// Modules that are whole, and do what they should not. What a host goes through with each of them
/// is compared line by line.
namespace QuorlTest
{
namespace
{

/// What a module changes of what the host says without it, in the order of the lines.
struct Harm
{
    const char* module;
    const char* whenOpened;        // lines of the kernel and of the module
    const char* creators;          // those that are there then
    const char* whenUsed = "";     // instead of the two good answers, if not empty
    bool isUnloaded = true;        // is it among those that are?
    const char* whenUnloaded = ""; // its lines meanwhile
    const char* whenEnded = "";    // and behind the host's last
};

void PrintTo(const Harm& harm, std::ostream* stream)
{
    *stream << harm.module;
}

constexpr const char* kGood = " Good/first Good/last";
constexpr const char* kWithHarm = " Good/first Good/last Harm/A";
constexpr const char* kAnswers = "Good/first answers\nGood/last answers\n";
constexpr const char* kAnswersAndHarm = "Good/first answers\nGood/last answers\nused is updated\n";

constexpr const char* kNoInit =
    "WARNING: (Windows) Module has NO init routine ZELM_API_2017_AUG_07__harm...\n";
constexpr const char* kTooOften =
    "VManagedObject::insert(): Do you really need more than 100 instances of Harm/A ?\n"
    " (object not registered!)\n"
    "VManagedObject::insert(): Do you really need more than 100 instances of Harm/A ?\n"
    " (object not registered!)\n";

std::string toldBy(const Harm& harm)
{
    std::string text = std::string(harm.whenOpened) + "opened: 3\ncreators:" + harm.creators + "\n";
    text += *harm.whenUsed ? harm.whenUsed : kAnswers;
    text += "unloading ./first.zelm\n";
    if (harm.isUnloaded) text += "unloading ./harm.zelm\n";
    text += harm.whenUnloaded;
    return text + "unloading ./last.zelm\ncreators:\ndone\n" + harm.whenEnded;
}

class HarmfulModule : public FolderOfModules, public testing::WithParamInterface<Harm>
{
};

TEST_P(HarmfulModule, LeavesTheHostAndItsOtherModulesWhole)
{
    copy(GetParam().module, kHarm);

    open();

    EXPECT_EQ(out, toldBy(GetParam()));
    EXPECT_EQ(status, 0) << err;
    EXPECT_EQ(log(), "");
}

const Harm kRefusals[] = {
    {.module = "ThrowsText", .whenOpened = "", .creators = kGood, .isUnloaded = false},
    {.module = "ThrowsNumber", .whenOpened = "", .creators = kGood, .isUnloaded = false},
    {.module = "ThrowsOwnType",
     .whenOpened = "the failure ends\n",
     .creators = kGood,
     .isUnloaded = false},
    {.module = "Refuses", .whenOpened = "", .creators = kGood, .isUnloaded = false},
    {.module = "SaysNothing", .whenOpened = "", .creators = kGood, .isUnloaded = false},
    {.module = "SaysAnotherWord", .whenOpened = "", .creators = kGood, .isUnloaded = false},
    {.module = "SaysNull", .whenOpened = "", .creators = kGood, .isUnloaded = false},
    {.module = "Subscribes",
     .whenOpened = "the subscriber ends\n",
     .creators = kGood,
     .isUnloaded = false},
    {.module = "LeavesACreatorAndRefuses",
     .whenOpened = "",
     .creators = kGood,
     .isUnloaded = false},
    {.module = "LeavesObjectsAndRefuses", .whenOpened = "", .creators = kGood, .isUnloaded = false},
};
INSTANTIATE_TEST_SUITE_P(ThatIsRefused, HarmfulModule, testing::ValuesIn(kRefusals),
                         [](const auto& test) { return test.param.module; });

const Harm kLoaded[] = {
    {.module = "CallsItselfAnother",
     .whenOpened = "",
     .creators = kWithHarm,
     .whenUsed = kAnswersAndHarm},
    {.module = "HasAThreadLocal",
     .whenOpened = "",
     .creators = kGood,
     .whenEnded = "the local ends\n"},
    {.module = "HasFormatsInItsKey",
     .whenOpened = "",
     .creators = " Good/first Good/last Harm/%s%n%s",
     .whenUsed = kAnswersAndHarm},
    {.module = "HasNoInit",
     .whenOpened = kNoInit,
     .creators = kWithHarm,
     .whenUsed = kAnswersAndHarm},
    {.module = "HasTheInitOfAnother",
     .whenOpened = kNoInit,
     .creators = kWithHarm,
     .whenUsed = kAnswersAndHarm},
    {.module = "InitIsData",
     .whenOpened = kNoInit,
     .creators = kWithHarm,
     .whenUsed = kAnswersAndHarm},
    {.module = "HasNoKey",
     .whenOpened = "VManagedObject::insert<N5Quorl17VInputCreatorBaseE> REFUSE to insert empty "
                   "object (./harm.zelm)\n"
                   "\n************ WARNING: VCreatorBase::VCreatorBase(,0) EMPTY creator name in "
                   "Zelm Module\n\tin harm\n *** no key available!\n\n",
     .creators = kGood},
    {.module = "LeavesACreator",
     .whenOpened = "",
     .creators = kWithHarm,
     .whenUsed = kAnswersAndHarm},
    {.module = "LeavesAThread", .whenOpened = "", .creators = kGood},
    {.module = "LeavesObjects",
     .whenOpened = "",
     .creators = kWithHarm,
     .whenUsed = kAnswersAndHarm},
    {.module = "LoadsAndUnloadsItself",
     .whenOpened = "loaded: 1\nunloaded: 1\n",
     .creators = kGood},
    {.module = "LoadsAnotherWhenItIsLoaded",
     .whenOpened = "./harm.zelm, ./harm.zelm\n SKIP loading of ./last.zelm\n",
     .creators = " Good/first Good/last Harm/Before Harm/Behind",
     .whenUsed = "Good/first answers\nGood/last answers\nused is updated\nused is updated\n"},
    {.module = "MakesFailures",
     .whenOpened = "",
     .creators = kWithHarm,
     .whenUsed = "Good/first answers\nGood/last answers\nHarm/A throws: not today\n"},
    {.module = "MakesNothing",
     .whenOpened = "",
     .creators = kWithHarm,
     .whenUsed = "Good/first answers\nGood/last answers\nHarm/A makes nothing\n"},
    {.module = "OneNameOften", .whenOpened = kTooOften, .creators = " 102"},
    {.module = "RemovesAnothersCreator",
     .whenOpened = "",
     .creators = " Good/last",
     .whenUsed = "Good/last answers\n"},
    {.module = "SeeksItsFormerCreator",
     .whenOpened = "VCreatorBaseInfo: No Creator, need to load [./harm.zelm]\n"
                   "VCreatorBaseInfo: ERROR: Could not load [./harm.zelm]!!\n"
                   "VCreatorBaseInfo: Merde, module [./harm.zelm] could not provide requested "
                   "Creator. This is not good. Really not good.\n"
                   "not found\n",
     .creators = kWithHarm,
     .whenUsed = kAnswersAndHarm},
    {.module = "TakesANameThatIsTaken",
     .whenOpened = "",
     .creators = " Good/first Good/first1 Good/last",
     .whenUsed = "Good/first answers\nused is updated\nGood/last answers\n"},
    {.module = "TenThousandCreators", .whenOpened = "", .creators = " 10002"},
    {.module = "UnloadsAnother",
     .whenOpened = "",
     .creators = " Good/last",
     .whenUsed = "Good/last answers\n"},
    {.module = "UnloadsItself",
     .whenOpened = "known: 0\n",
     .creators = kWithHarm,
     .whenUsed = kAnswersAndHarm},
    {.module = "UnloadsItselfWhenAsked",
     .whenOpened = "",
     .creators = kWithHarm,
     .whenUsed = "Good/first answers\nGood/last answers\nunloaded: 1\n"},
    {.module = "UnloadsItselfWhenMade",
     .whenOpened = "",
     .creators = kWithHarm,
     .whenUsed = "Good/first answers\nGood/last answers\nunloaded: 1\nunloaded: 1\n"},
    {.module = "WantsToBeCalledAtTheEnd",
     .whenOpened = "",
     .creators = kGood,
     .whenUnloaded = "called at the end\n"},
};
INSTANTIATE_TEST_SUITE_P(ThatIsLoaded, HarmfulModule, testing::ValuesIn(kLoaded),
                         [](const auto& test) { return test.param.module; });

class FatalModule : public FolderOfModules
{
};

TEST_F(FatalModule, MayBeRefusedByTheLoaderForWhatItNeeds)
{
    for (const auto& [module, symbol] : {std::pair("NeedsAFunctionOfNobody", "functionOfNobody"),
                                         std::pair("NeedsDataOfNobody", "dataOfNobody")})
    {
        std::filesystem::remove(path(kHarm));
        std::filesystem::remove(path("ZelmError.log"));
        copy(module, kHarm);
        open();
        EXPECT_EQ(
            out,
            "Loading Library [./harm.zelm] failed ;-(, see ZelmError.log for details.\n" +
                toldBy(
                    {.module = module, .whenOpened = "", .creators = kGood, .isUnloaded = false}));
        EXPECT_EQ(log(), "Error while loading Zelm plugin\n ./harm.zelm \n\nThe problem is that "
                         "\"./harm.zelm: undefined symbol: " +
                             std::string(symbol) + "\"\n\n");
    }
}

TEST_F(FatalModule, IsRefusedUnreadIfItHasNoNotes)
{
    copy("HasNoNote", kHarm);
    open();
    EXPECT_EQ(
        out,
        "Loading Library [./harm.zelm] failed ;-(, see ZelmError.log for details.\n" +
            toldBy(
                {.module = "HasNoNote", .whenOpened = "", .creators = kGood, .isUnloaded = false}));
    EXPECT_EQ(log(), "No Zelm version resource information available.\n\n");
}

TEST_F(FatalModule, EndsTheProcessAsItWishesToWhenItLeaves)
{
    copy("ExitsInADestructor", kHarm);
    open();
    EXPECT_EQ(status, 3);
    EXPECT_EQ(out, std::string("opened: 3\ncreators:") + kWithHarm + "\n" + kAnswersAndHarm +
                       "unloading ./first.zelm\nunloading ./harm.zelm\n");
}

TEST_F(FatalModule, EndsTheProcessAsItWishesToWhenItComes)
{
    for (const char* const module : {"ExitsWhenItIsInitialised", "ExitsWhenItIsLoaded"})
    {
        std::filesystem::remove(path(kHarm));
        copy(module, kHarm);
        open();
        EXPECT_EQ(status, 3) << module;
        EXPECT_EQ(out, "") << module;
        EXPECT_EQ(err, "") << module;
    }
}

TEST_F(FatalModule, EndsTheProcessIfItThrowsWhileItIsLoaded)
{
    copy("ThrowsWhenItIsLoaded", kHarm);
    open();
    EXPECT_EQ(status, -1) << "the loader lets no exception pass";
    EXPECT_THAT(err, testing::HasSubstr("static"));
}

} // namespace
} // namespace QuorlTest
