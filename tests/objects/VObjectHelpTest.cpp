#include <quorl/foundation/Typename.h>
#include <quorl/objects/VFindLongestObjectInputName.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VAcception.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>
#include <tests/support/TestCreator.h>

#include <gtest/gtest.h>

#include <climits>

/// What an object tells of itself.
namespace Quorl
{
namespace
{

using QuorlTest::Registered;
using QuorlTest::TestCreator;

struct Help : testing::Test
{
    Registered<VObject> object{new VObject(string("parent\x1E") + "child", 0, {})};
};

using VObjectHelp = Help;

TEST_F(VObjectHelp, WithoutACreatorTellsItsNameAlone)
{
    EXPECT_EQ(object->help(VObject::HelpPlain), "This is a Zelm object, named parent");
    EXPECT_EQ(object->help(static_cast<VObject::HelpType>(3)),
              "This is a Zelm object, named parent");
    EXPECT_EQ(object->help(VObject::HelpURL), VObject::HelpServer);
    EXPECT_EQ(object->help(VObject::HelpOrigin), "");
    EXPECT_EQ(object->help(VObject::HelpRichName), "This is a Zelm object, named <I>parent</I>.");
    EXPECT_EQ(object->CreatorName(), "");
}

TEST_F(VObjectHelp, WithACreatorTellsItsOrigin)
{
    VManagedObject::CurrentLoadModule = "maker.zelm";
    const Registered creator(new TestCreator("Help/Maker"));
    VManagedObject::CurrentLoadModule = "";
    object->setCreator(WeakPtr<VCreatorBase>(creator.handle()));

    EXPECT_EQ(object->CreatorName(), "Help/Maker");
    EXPECT_EQ(object->help(VObject::HelpPlain), "This is a Zelm object, named parent");
    EXPECT_EQ(object->help(VObject::HelpURL), VObject::HelpServer + "/api/search.php?query=parent");
    EXPECT_EQ(object->help(VObject::HelpOrigin),
              "This Zelm object was created via <I>Help/Maker</I>, which has been loaded from "
              "<TT>maker.zelm</TT><P>");
    EXPECT_EQ(object->help(VObject::HelpRichName),
              "This is a Zelm object, named <I>parent</I>, created from <I>Help/Maker</I>.");
}

TEST_F(VObjectHelp, GivesTheBareAddressOnceTheCreatorIsGone)
{
    Registered creator(new TestCreator("Help/Leaving"));
    object->setCreator(WeakPtr<VCreatorBase>(creator.handle()));
    creator.drop();

    EXPECT_EQ(object->help(VObject::HelpURL), VObject::HelpServer);
    EXPECT_EQ(object->help(VObject::HelpOrigin), "");
    EXPECT_EQ(object->help(VObject::HelpRichName), "This is a Zelm object, named <I>parent</I>.");
    EXPECT_EQ(object->CreatorName(), "");
}

TEST_F(VObjectHelp, AsksTheServerThatIsSet)
{
    const string before = VObject::HelpServer;
    VObject::HelpServer = "https://docs.invalid";
    EXPECT_EQ(object->help(VObject::HelpURL), "https://docs.invalid");
    VObject::HelpServer = before;
}

TEST_F(VObjectHelp, HasABaseNameWithoutWhatWasAdded)
{
    EXPECT_EQ(object->BaseName(), "parent");
    EXPECT_EQ(VObject::BaseName("plain"), "plain");
    EXPECT_EQ(VObject::BaseName("a\x1E"
                                "b\x1E"
                                "c"),
              "a");
    EXPECT_EQ(VObject::BaseName(""), "");
}

TEST_F(VObjectHelp, HasDefaultsThatTellNothing)
{
    const Registered creator(new TestCreator("Help/Default"));
    EXPECT_FALSE(object->copy().referer);
    EXPECT_EQ(object->gimp_icon(), nullptr);
    EXPECT_EQ(object->xpm_icon(), nullptr);
    EXPECT_EQ(object->createChildname("x"), "");
    EXPECT_EQ(object->makeChildname(*creator, "x"), "");
    EXPECT_TRUE(object->accept(object).empty());
    EXPECT_TRUE(object->setObjectAsChild({}, "x"));
}

TEST_F(VObjectHelp, IsKeyedByItsDynamicType)
{
    QuorlTest::Network network;
    const RefPtr<VObject> node = network.node("node");
    EXPECT_EQ(object->type_key(), "Quorl::VObject");
    EXPECT_EQ(node->type_key(), "QuorlTest::Node");
}

TEST(VFindLongestObjectInputName, KeepsTheFirstOfTheLongest)
{
    QuorlTest::Network network;
    const auto object = network.node("object");
    for (const char* name : {"a", "bbb", "ccc", "dd"}) object->input(name);
    VFindLongestObjectInputName longest;
    EXPECT_EQ(longest.Longest, "");
    object->iterateParameters(INT_MAX, longest);

    EXPECT_EQ(longest.Longest, "bbb");
}

} // namespace
} // namespace Quorl
