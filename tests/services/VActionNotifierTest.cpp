#include <quorl/services/VActionNotifier.h>

#include <quorl/objects/VObjectUserInfo.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::Network;

/// Notes all that it hears, under a name.
class Subscriber final : public VActionNotifier
{
public:
    Subscriber(char subscriberName, string& commonLog) : name_(subscriberName), log_(commonLog) {}

    void createVObject(const RefPtr<VObject>& object, const Tolmen::Intercube&,
                       const WeakPtr<VCreatorBase>&) override
    {
        note("create " + object->getName() + "/" + object->UserInfo);
    }
    void deleteVObject(const string& objectName) override { note("delete " + objectName); }
    void warn(const string& text) override { note("warn " + text); }
    void warn(const WarnInfo& info) override
    {
        note("warn " + info.origin + "/" + info.text + "/" + info.details + "/" +
             std::to_string(info.severity));
    }
    bool progress(unsigned long id, const string& text, int current, int total) override
    {
        note("progress " + std::to_string(id) + text + std::to_string(current) +
             std::to_string(total));
        return answer;
    }
    void status(const string& text) override { note("status " + text); }
    bool attachPrefix(const RefPtr<VParameter>&, const RefPtr<VSlot>&) override
    {
        note("prefix");
        if (whenAsked) whenAsked();
        return answer;
    }
    void attachPostfix(const RefPtr<VSlot>&) override { note("postfix"); }
    void changeParameter(const WeakPtr<VParameter>& parameter, const RefPtr<ValuePool>&,
                         const WeakPtr<VValueBase>&, const string& member) override
    {
        note("change " + parameter->name + "." + member);
    }

    bool answer = true;
    std::function<void()> whenAsked;

private:
    void note(const string& what) { log_ += string(1, name_) + ":" + what + ";"; }

    char name_;
    string& log_;
};

struct Three : testing::Test
{
    void SetUp() override
    {
        for (const char subscriberName : {'a', 'b', 'c'})
        {
            subscribers.emplace_back(new Subscriber(subscriberName, log));
            ASSERT_TRUE(subscribers.back()->activate());
        }
    }

    string log;
    std::vector<RefPtr<Subscriber>> subscribers;
    Network network;
    RefPtr<VSlot> slot = network.node("object")->input("x");
};

using VActionNotifierThree = Three;

TEST(VActionNotifier, AnswersTrueWithoutSubscribers)
{
    Network network;
    const auto slot = network.node("object")->input("x");

    EXPECT_TRUE(VActionNotifier::ProgressInfo(1, "", 0, 0));
    EXPECT_TRUE(VActionNotifier::AttachParameterPrefix({}, slot));
}

TEST_F(VActionNotifierThree, StopsAtTheFirstObjection)
{
    subscribers[1]->answer = false;

    EXPECT_FALSE(VActionNotifier::AttachParameterPrefix({}, slot));
    EXPECT_EQ(log, "a:prefix;b:prefix;");
}

TEST_F(VActionNotifierThree, AsksAllForProgress)
{
    EXPECT_TRUE(VActionNotifier::ProgressInfo(7, "t", 1, 2));
    EXPECT_EQ(log, "a:progress 7t12;b:progress 7t12;c:progress 7t12;");
    log.clear();
    subscribers[1]->answer = false;

    EXPECT_FALSE(VActionNotifier::ProgressInfo(7, "t", 1, 2));
    EXPECT_EQ(log, "a:progress 7t12;b:progress 7t12;c:progress 7t12;");
}

TEST_F(VActionNotifierThree, TellsAllInTheOrderOfActivation)
{
    VActionNotifier::VObjectDeletion("o");
    VActionNotifier::Warning("w");
    VActionNotifier::StatusInfo("s");
    VActionNotifier::AttachParameterPostfix(slot);
    EXPECT_EQ(log, "a:delete o;b:delete o;c:delete o;a:warn w;b:warn w;c:warn w;"
                   "a:status s;b:status s;c:status s;a:postfix;b:postfix;c:postfix;");
    subscribers.resize(1);
    log.clear();
    VActionNotifier::Warning(VActionNotifier::WarnInfo{"o", "t", "d"});
    const auto parameter = makeParameter("p");
    VParameter::NotifyActionChangeParameter(parameter, {}, {}, "m");

    EXPECT_EQ(log, "a:warn o/t/d/0;a:change p.m;") << "the ended are passed over";
}

TEST_F(VActionNotifierThree, TellsOneThatIsSubscribedTwiceTwice)
{
    subscribers.resize(1);
    EXPECT_TRUE(subscribers[0]->activate());
    VActionNotifier::StatusInfo("s");

    EXPECT_EQ(log, "a:status s;a:status s;");
}

TEST_F(VActionNotifierThree, KeepsASubscriberAliveInItsCall)
{
    subscribers.resize(2);
    subscribers[0]->whenAsked = [&] { subscribers.erase(subscribers.begin()); };

    EXPECT_TRUE(VActionNotifier::AttachParameterPrefix({}, slot));
    EXPECT_EQ(log, "a:prefix;b:prefix;");
    log.clear();
    VActionNotifier::StatusInfo("s");
    EXPECT_EQ(log, "b:status s;");
}

TEST_F(VActionNotifierThree, PassesExceptionsOfASubscriberToTheSender)
{
    subscribers[1]->whenAsked = [] { throw 5; };

    EXPECT_THROW(VActionNotifier::AttachParameterPrefix({}, slot), int);
    EXPECT_EQ(log, "a:prefix;b:prefix;");
}

TEST_F(VActionNotifierThree, ReachesOneThatIsActivatedMeanwhile)
{
    RefPtr<Subscriber> late(new Subscriber('l', log));
    subscribers.resize(1);
    subscribers[0]->whenAsked = [&] { late->activate(); };
    VActionNotifier::AttachParameterPrefix({}, slot);

    EXPECT_EQ(log, "a:prefix;l:prefix;");
}

TEST(VActionNotifier, SubscribesOnlyWhatSomebodyHolds)
{
    string log;
    Subscriber onTheStack('s', log);
    EXPECT_FALSE(onTheStack.activate());
    VActionNotifier::StatusInfo("x");

    EXPECT_EQ(log, "");
}

TEST(VActionNotifier, NeverObjectsByDefault)
{
    const RefPtr<VActionNotifier> plain(new VActionNotifier);
    ASSERT_TRUE(plain->activate());
    Network network;
    const auto slot = network.node("object")->input("x");

    EXPECT_TRUE(VActionNotifier::AttachParameterPrefix({}, slot));
    EXPECT_TRUE(VActionNotifier::ProgressInfo(1, "", 0, 0));
}

TEST(VActionNotifier, TakesAllAndKeepsNothingFromOthersByDefault)
{
    string log;
    const RefPtr<VActionNotifier> plain(new VActionNotifier);
    const RefPtr<Subscriber> behind(new Subscriber('b', log));
    ASSERT_TRUE(plain->activate());
    ASSERT_TRUE(behind->activate());
    Network network;
    const auto object = network.node("object");
    log.clear(); // what the object told of itself

    VActionNotifier::VObjectCreation(object, {}, {});
    VActionNotifier::VObjectDeletion("name");
    VActionNotifier::Warning("text");
    VActionNotifier::Warning(VActionNotifier::WarnInfo());
    VActionNotifier::StatusInfo("state");
    VActionNotifier::ChangeParameter(makeParameter("p"), {}, {}, "m");

    EXPECT_EQ(log, "b:create object/;b:delete name;b:warn text;b:warn ///0;b:status state;"
                   "b:change p.m;");
}

TEST(VActionNotifier, GivesAnObjectItsUserInfoBeforeAnybodyHears)
{
    Network network;
    const auto object = network.node("object");
    Tolmen::Intercube info;
    VActionNotifier::VObjectCreation(object, info, {});
    EXPECT_EQ(object->UserInfo, "");
    info.addInterface(new VObjectUserInfo("the user"));
    VActionNotifier::VObjectCreation(object, info, {});

    EXPECT_EQ(object->UserInfo, "the user");
    const RefPtr<VObjectUserInfo> own = object->findInterface(typeid(VObjectUserInfo));
    ASSERT_TRUE(own);
    EXPECT_EQ(own->text, "the user");

    Tolmen::Intercube other;
    other.addInterface(new VObjectUserInfo("another"));
    string log;
    const RefPtr<Subscriber> subscriber(new Subscriber('s', log));
    ASSERT_TRUE(subscriber->activate());
    VActionNotifier::VObjectCreation(object, other, {});
    EXPECT_EQ(log, "s:create object/another;");
    EXPECT_EQ(own->text, "another") << "replaced in place";
}

TEST(VActionNotifier, CountsProgressFromOne)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process of its own
    EXPECT_EXIT(
        {
            const bool isRight = VActionNotifier::getNewProgressID() == 1 &&
                                 VActionNotifier::getNewProgressID() == 2;
            std::exit(isRight ? 7 : 8);
        },
        testing::ExitedWithCode(7), "");
}

/// Outlives the list of subscribers: made before it, so destroyed after it.
struct Late
{
    ~Late()
    {
        if (!isWanted) return;
        Network network;
        const auto slot = network.node("late")->input("x");
        const RefPtr<VActionNotifier> subscriber(new VActionNotifier);
        const bool isSilent = !VActionNotifier::ProgressInfo(1, "", 0, 0) &&
                              !VActionNotifier::AttachParameterPrefix({}, slot) &&
                              !VActionNotifier::AttachParameterPrefix({}, {}) && // asks no slot
                              !subscriber->activate();
        VActionNotifier::VObjectDeletion("harmless");
        std::_Exit(isSilent ? 7 : 8);
    }
    bool isWanted = false;
};

Late& late()
{
    static Late instance;
    return instance;
}

TEST(VActionNotifier, IsUnavailableOnceTheProcessCleansUp)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process without a list as yet
    EXPECT_EXIT(
        {
            late().isWanted = true;
            VActionNotifier::StatusInfo("the list is made");
            std::exit(9);
        },
        testing::ExitedWithCode(7), "");
}

TEST(CreationSource, NamesTheSlotForWhichAnObjectIsMade)
{
    Network network;
    const auto slot = network.node("object")->input("x");
    Tolmen::Intercube info;
    info.addInterface(new VActionNotifier::CreationSource(slot));

    const RefPtr<VActionNotifier::CreationSource> source =
        info.findInterface(typeid(VActionNotifier::CreationSource));
    ASSERT_TRUE(source);
    EXPECT_EQ(source->slot, slot);
}

} // namespace
} // namespace Quorl
