#include <quorl/objects/VObject.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

/// Which inputs a request goes into: of the classes that are known, not the ignored ones, and none
/// any more once it is cancelled.
namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Node;
using QuorlTest::touchInput;

using Names = std::vector<std::string>;

class Cancellable final : public VRequest
{
public:
    using VRequest::VRequest;
    bool isCancelled() const override { return cancelled; }
    bool cancelled = false;
};

TEST(VObjectRequest, EndsTheWalkOfACancelledRequestAtTheNextSlot)
{
    Network network;
    const auto first = network.node("first");
    const auto second = network.node("second");
    const auto object = network.node("object");
    network.connect(first, object, "1");
    network.connect(second, object, "2");
    Cancellable request(makePool(), false);
    first->whenUpdated = [&](VRequest&) { return request.cancelled = true; };

    EXPECT_FALSE(object->init_request(request, 1.0)) << "though the first input demands an update";

    EXPECT_EQ(network.takeLog(), (Names{"first"}));
    EXPECT_FALSE(object->Current) << "the object is free again";
}

TEST(VObjectRequest, DoesNotUpdateIfItIsCancelledAtTheLastInput)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "x");
    Cancellable request(makePool(), false);
    source->whenUpdated = [&](VRequest&) { return request.cancelled = true; };

    EXPECT_FALSE(object->init_request(request, 1.0));

    EXPECT_EQ(network.takeLog(), (Names{"source"}));
    EXPECT_FALSE(object->Current);
}

/// Notes the inputs that it is asked about.
class Choosy final : public Node
{
public:
    using Node::Node;
    bool ignoreInput(const RefPtr<VSlot>& slot) const override
    {
        asked.push_back(slot->Name);
        return true;
    }
    mutable Names asked;
};

TEST(VObjectRequest, MayIgnoreOnlyInputsOfTheClassesThatItKnows)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.adopt(new Choosy("object"));
    network.connect(source, object, "known");
    network.connect(source, object, "other")->InputClass = 77;
    object->addParameter("empty", 0, makeParameter("e"), false)->Parameter = {};

    ask(object, makePool());

    EXPECT_EQ(object->asked, (Names{"known"}));
    EXPECT_EQ(network.takeLog(), (Names{"object"}));
}

TEST(VObjectRequest, IgnoresInputsOfOtherClasses)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    const auto slot = network.connect(source, object, "x");
    const auto pool = makePool();
    ask(object, pool);
    network.takeLog();
    slot->InputClass = 77;
    touchInput(slot);

    EXPECT_FALSE(ask(object, pool));
    object->classes.insert(77);
    EXPECT_TRUE(ask(object, pool));
}

TEST(VObjectRequest, IgnoresInputsByTheirNames)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "qZelm::x");
    network.connect(source, object, "qZelm:x");

    ask(object, makePool());

    EXPECT_EQ(network.takeLog(), (Names{"source", "object"}));
    source->Current = WeakPtr<VRequest::ID>();
    EXPECT_EQ(source->updates, 1);
}

} // namespace
} // namespace Quorl
