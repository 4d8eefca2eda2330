#include <quorl/foundation/SpeakPtr.h>

#include <tests/foundation/HandleTestTypes.h>
#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

namespace QuorlTest
{
namespace
{

using Tolmen::SpeakPtr;

TEST(SpeakPtr, IsReplacedAndRestored)
{
    SpeakPtr& original = SpeakPtr::theSpeaker();
    SpeakPtr first;
    SpeakPtr second;
    EXPECT_EQ(SpeakPtr::setSpeaker(&first), nullptr) << "the default has no address to give";
    EXPECT_EQ(&SpeakPtr::theSpeaker(), &first);
    EXPECT_EQ(SpeakPtr::setSpeaker(&second), &first);
    EXPECT_EQ(SpeakPtr::setSpeaker(nullptr), &second);

    EXPECT_EQ(&SpeakPtr::theSpeaker(), &original);
}

/// Whether it is one whole line.
bool isLine(const std::string& text)
{
    return std::count(text.begin(), text.end(), '\n') == 1 && text.back() == '\n';
}

std::string addressText(const void* address)
{
    std::ostringstream text;
    text << address;
    return text.str();
}

TEST(SpeakPtr, WritesALineForEachReportToStandardError)
{
    SpeakPtr& speaker = SpeakPtr::theSpeaker();
    const int here = 0;
    std::string out = outputOf([&] {
        const std::string critical = errorOutputOf(
            [&] { speaker.CriticalWarning(typeid(int), typeid(void), &here, nullptr); });
        const std::string self =
            errorOutputOf([&] { speaker.SelfConstruction(typeid(int), &here, nullptr); });
        const std::string inconsistent = errorOutputOf([&] {
            speaker.InconsistentDynPtr(typeid(int), typeid(long), typeid(char), nullptr, &here,
                                       &here, &here);
        });
        for (const std::string& text : {critical, self, inconsistent}) EXPECT_PRED1(isLine, text);
        EXPECT_EQ(critical, "int: the count block (nil) of the object " + addressText(&here) +
                                " (void) has no shares left\n");
        EXPECT_EQ(self, "int: the handle " + addressText(&here) +
                            " is constructed from itself (count block (nil))\n");
        EXPECT_NE(inconsistent.find("long"), std::string::npos) << inconsistent;
    });
    EXPECT_EQ(out, "");
}

TEST(SpeakPtr, WritesTheStateOfAHandleToStandardError)
{
    const std::string null = errorOutputOf([] { RefPtr<Root>().Speak("one", "two"); });
    EXPECT_EQ(null.find("twoone "), 0U) << null;
    EXPECT_NE(null.find(": null\n"), std::string::npos) << null;
    EXPECT_PRED1(isLine, null);

    const RefPtr<Root> handle(new Left);
    const std::string alive = errorOutputOf([&] { handle.Speak("one", "two"); });
    EXPECT_NE(alive.find("strong 1, weak 2"), std::string::npos) << alive;
    EXPECT_NE(alive.find("QuorlTest::Left"), std::string::npos) << alive;
    EXPECT_PRED1(isLine, alive);

    delete handle.rawptr();
    const std::string dead = errorOutputOf([&] { handle.Speak(nullptr, nullptr); });
    EXPECT_NE(dead.find(": dead\n"), std::string::npos) << dead;
}

} // namespace
} // namespace QuorlTest
