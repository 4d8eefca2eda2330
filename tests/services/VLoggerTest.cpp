#include <quorl/services/VLogger.h>

#include <quorl/services/Vprintf.h>
#include <quorl/values/ValueNotifier.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/TestTask.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::outputOf;

/// Notes messages in place of printing them.
class Listener final : public VLogger
{
public:
    struct Message
    {
        string text;
        int level;
        int indent;
        string file;
        unsigned line;
        string function;
    };
    void printmsg(const string& message, int level, int indent, const string& file,
                  unsigned int line, const WeakPtr<VTask>& thread, const string& function) override
    {
        messages.push_back({message, level, indent, file, line, function});
        EXPECT_EQ(thread.referer, nullptr);
    }
    std::vector<Message> messages;
};

RefPtr<Listener> activated()
{
    const RefPtr<Listener> listener(new Listener);
    EXPECT_TRUE(listener->activate());
    return listener;
}

void printDirectly(const string& message, int level, int indent, const string& file, unsigned line,
                   const string& function)
{
    VLogger::print(message, level, indent, file, line, {}, function);
}

TEST(VLogger, SendsNothingAnywhereWithoutSubscribers)
{
    verbosity_level = 100;
    const string text = outputOf(
        [] { EXPECT_EQ(QuorlTest::errorOutputOf([] { VLogger::print(-5, "lost"); }), ""); });
    verbosity_level = 0;

    EXPECT_EQ(text, "");
}

TEST(VLogger, SubscribesOnlyWhatSomebodyHolds)
{
    Listener onTheStack;
    EXPECT_FALSE(onTheStack.activate());
    VLogger::print(0, "x");
    EXPECT_TRUE(onTheStack.messages.empty());

    const auto listener = activated();
    EXPECT_TRUE(listener->activate());
    VLogger::print(0, "x");
    EXPECT_EQ(listener->messages.size(), 2U) << "subscribed twice, told twice";
}

TEST(VLogger, DescribesMessagesByTheScope)
{
    const auto listener = activated();
    VLogger::print(4, "outside");
    VLogger::enter("one");
    VLogger::CurrentState().file = "a.cpp";
    VLogger::CurrentState().line = 12;
    VLogger::print(5, "inside");
    VLogger::enter("two");
    VLogger::print(6, "deeper");
    VLogger::enter("three");
    VLogger::print(7, "deepest");
    VLogger::leave();
    VLogger::leave();
    VLogger::leave();
    VLogger::print(8, "outside again");

    ASSERT_EQ(listener->messages.size(), 5U);
    const std::vector<int> indents{0, 3, 4, 5, 0};
    const std::vector<string> functions{"::", "one", "two", "three", "::"};
    for (std::size_t i = 0; i < 5; ++i)
    {
        EXPECT_EQ(listener->messages[i].indent, indents[i]);
        EXPECT_EQ(listener->messages[i].function, functions[i]);
        EXPECT_EQ(listener->messages[i].level, static_cast<int>(i) + 4);
    }
    EXPECT_EQ(listener->messages[1].file, "a.cpp");
    EXPECT_EQ(listener->messages[1].line, 12U);
    EXPECT_EQ(listener->messages[2].file, "") << "of its own scope alone";
}

TEST(VLogger, KeepsTheScopesOfEachTask)
{
    QuorlTest::TestManager manager;
    const QuorlTest::TestThreads threads(manager);
    const auto task = QuorlTest::makeTask();

    manager.current = task;
    VLogger::enter("of the task");
    manager.current = WeakPtr<VTask>();
    EXPECT_EQ(VLogger::CurrentState().name, "::");
    manager.current = task;
    EXPECT_EQ(VLogger::CurrentState().name, "of the task");
    VLogger::leave();
    EXPECT_EQ(VLogger::CurrentState().name, "::");
}

TEST(VLogger, RefusesAScopeWithoutAName)
{
    const char* const none = nullptr;
    EXPECT_THROW(VLogger::enter(none), std::logic_error);
    EXPECT_EQ(VLogger::CurrentState().name, "::") << "nothing was pushed";
}

TEST(VLogger, CutsAFormattedMessageAt1023Characters)
{
    const auto listener = activated();
    VLogger::printf(1, "%s", string(2000, 'x').c_str());
    VLogger::printf(1, "%d and %s", 5, "six");

    EXPECT_EQ(listener->messages.at(0).text, string(1023, 'x'));
    EXPECT_EQ(listener->messages.at(1).text, "5 and six");
}

TEST(VLogger, TakesWhatCannotBeFormattedForAnEmptyMessage)
{
    const auto listener = activated();
    VLogger::printf(1, "before %ls", L"\xD800"); // half of a character, in any locale

    ASSERT_EQ(listener->messages.size(), 1U);
    EXPECT_EQ(listener->messages[0].text, "");
}

TEST(VLogger, HandsAFullDescriptionOnAsItIs)
{
    const auto listener = activated();
    printDirectly("", -3, -7, "f", 9, "fun");

    EXPECT_EQ(listener->messages.at(0).indent, -7);
    EXPECT_EQ(listener->messages.at(0).line, 9U);
}

TEST(VLoggerPrinting, ClosesEachMessageWithOneLineEnd)
{
    VLogger logger;
    const auto print = [&](const string& message) {
        return outputOf([&] { logger.printmsg(message, 2, 0, "", 0, {}, "f"); });
    };

    EXPECT_EQ(print("text"), "f: [2] text\n");
    EXPECT_EQ(print("text\n"), "f: [2] text\n");
    EXPECT_EQ(print("text\n\n"), "f: [2] text\n\n");
    EXPECT_EQ(print(""), "");
}

TEST(VLoggerPrinting, PrefixesFileLineFunctionAndLevel)
{
    VLogger logger;
    const auto print = [&](const string& file, const string& function, int indent) {
        return outputOf([&] { logger.printmsg("m", -1, indent, file, 42, {}, function); });
    };

    EXPECT_EQ(print("a.cpp", "f", 3), "a.cpp(42): f [-1]    m\n");
    EXPECT_EQ(print("a.cpp", "", 0), "a.cpp(42):  [-1] m\n");
    EXPECT_EQ(print("", "f", 1), "f: [-1]  m\n");
    EXPECT_EQ(print("", "", -4), " [-1] m\n");
}

TEST(VLoggerPrinting, ShowsThreeColonsOutsideOfAllScopes)
{
    const RefPtr<VLogger> logger(new VLogger);
    ASSERT_TRUE(logger->activate());

    EXPECT_EQ(outputOf([] { VLogger::print(0, "m"); }), "::: [0] m\n");
    EXPECT_EQ(outputOf([] {
                  VLogger::enter("scope");
                  VLogger::printf(1, "%s", "m");
                  VLogger::leave();
              }),
              "scope: [1]    m\n");
}

TEST(VLogger, ShowsLiveAndEndedSubscribersInOrder)
{
    const auto internals = [] { return outputOf([] { VLogger::print_internals(); }); };
    string expected = internals(); // with those of other tests, ended or not
    EXPECT_EQ(expected.substr(0, 7), "info()\n");
    expected.erase(expected.rfind("VLoggerList_t() info done\n"));
    const auto first = activated();
    activated(); // ends at once
    const auto third = activated();

    EXPECT_EQ(internals(), expected + "VLoggerIterator found!\n"
                                      "ZOMBI VLoggerIterator found!\n"
                                      "VLoggerIterator found!\n"
                                      "VLoggerList_t() info done\n");
    VLogger::print(0, "on");
    EXPECT_EQ(third->messages.size(), 1U);
}

} // namespace
} // namespace Quorl
