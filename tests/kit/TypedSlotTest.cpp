#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/ValueTraits.h>
#include <quorl/modules/VModuleHold.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>
#include <tests/support/Observer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::errorOutputOf;
using QuorlTest::makePool;
using testing::ElementsAre;

/// Doubles what comes in.
class Doubler final : public VObject
{
public:
    using VObject::VObject;

    bool update(VRequest& request, double /*precision*/) override
    {
        out.set(request, 2 * in(request));
        return true;
    }

    const InputSlot<int> in{*this, "in", 5, perContext(), 3};
    const InputSlot<bool> flag{*this, "flag", true};
    const OutputSlot<int> out{*this, "out", -1};
};

struct TypedSlots : testing::Test
{
    ~TypedSlots() override { object->VManagedObject::remove(); }

    bool ask(const RefPtr<ValuePool>& inPool)
    {
        VRequest request(inPool, false);
        return object->init_request(request, 1.0);
    }

    RefPtr<Doubler> object{new Doubler("doubler", 0, {})};
    RefPtr<ValuePool> pool = makePool();
};

TEST_F(TypedSlots, AnInputIsEnteredWithItsNameLevelAndDefault)
{
    int level = 0;
    const RefPtr<VSlot> slot = object->getSlot("in", level);

    ASSERT_TRUE(slot);
    EXPECT_EQ(slot, object->in.slot());
    EXPECT_EQ(level, 3);
    EXPECT_EQ(slot->Parameter->Name(), "doubler.in");
    EXPECT_TRUE(slot->Parameter->isLocal());
    EXPECT_TRUE(slot->Parameter->preferences->contains("local"));
    EXPECT_FALSE(object->flag.slot()->Parameter->isLocal());
    EXPECT_EQ(object->in.read(pool), 5);
    EXPECT_EQ(object->flag.read({}), true);
}

TEST_F(TypedSlots, AnOutputIsProvidedByItsObject)
{
    const RefPtr<VSlot> slot = object->getOutput("out");

    ASSERT_TRUE(slot);
    EXPECT_EQ(slot, object->out.slot());
    EXPECT_EQ(slot->getSource(), object);
    EXPECT_TRUE(slot->getType() == typeid(int));
    EXPECT_EQ(object->out.read(pool), -1);
}

TEST_F(TypedSlots, AnUpdateReadsAndWritesInTheContextOfItsRequest)
{
    const RefPtr<ValuePool> other = makePool();
    object->in.slot()->Parameter->setValueFromText("21", pool, "", true, {}, nullptr, nullptr);

    EXPECT_TRUE(ask(pool));
    EXPECT_TRUE(ask(other));

    EXPECT_EQ(object->out.read(pool), 42);
    EXPECT_EQ(object->out.read(other), 10);
    EXPECT_EQ(object->out.read({}), -1) << "the default stands";
}

TEST_F(TypedSlots, WritingTellsTheObserversFirstAndThenMakesTheValueYounger)
{
    const RefPtr<QuorlTest::Observer> observer = QuorlTest::makeObserver();
    const RefPtr<VParameter> parameter = object->out.slot()->Parameter;
    parameter->addNotifier(observer);
    object->out.read(pool);
    const auto before = parameter->age(pool).stamp();

    EXPECT_EQ(QuorlTest::ticksOf([&] { object->out.set(pool, 8); }), 1);

    ASSERT_EQ(observer->calls.size(), 1U);
    EXPECT_EQ(observer->calls[0].text, "8");
    EXPECT_EQ(observer->calls[0].pool, pool);
    EXPECT_EQ(observer->calls[0].age, before) << "the age that it had";
    EXPECT_EQ(parameter->age(pool), Ageable::GlobalTime);
}

TEST_F(TypedSlots, WithoutAPoolTheDefaultIsWritten)
{
    object->out.set(RefPtr<ValuePool>(), 9);

    EXPECT_EQ(object->out.read({}), 9);
    EXPECT_EQ(object->out.read(pool), 9) << "of which a context's value is a copy";
}

TEST_F(TypedSlots, AnInputCanBeSetInAContext)
{
    object->in.set(pool, 7);

    EXPECT_TRUE(ask(pool));
    EXPECT_EQ(object->out.read(pool), 14);
    EXPECT_EQ(object->in.read(makePool()), 5);
}

TEST_F(TypedSlots, AnInputOfAnotherTypeFailsTheUpdateWithAClearText)
{
    object->in.slot()->assignParameter(QuorlTest::makeParameter("real", 1.5), "");

    EXPECT_EQ(object->in.read(pool), std::nullopt);
    bool answer = true;
    EXPECT_THAT(errorOutputOf([&] { answer = ask(pool); }),
                testing::HasSubstr("The slot in shows double, not int."));
    EXPECT_FALSE(answer);
    EXPECT_EQ(object->out.read(pool), -1);
}

TEST_F(TypedSlots, AnEmptyInputFailsTheUpdateWithAClearText)
{
    object->in.slot()->assignParameter({}, "");

    EXPECT_THAT(errorOutputOf([&] { ask(pool); }),
                testing::HasSubstr("The slot in shows void, not int."));
}

TEST_F(TypedSlots, AParameterIsCopiedWithItsValueAndItsLocality)
{
    for (const RefPtr<VSlot>& slot : {object->in.slot(), object->flag.slot()})
    {
        const RefPtr<VParameter> parameter = slot->Parameter;
        const RefPtr<VParameter> copied = parameter->copy();
        ASSERT_TRUE(copied);
        EXPECT_EQ(copied->isLocal(), parameter->isLocal());
        EXPECT_EQ(copied->getValueAsText({}, "", false), parameter->getValueAsText({}, "", false));
        EXPECT_NE(copied->DefaultValue(), parameter->DefaultValue());
        EXPECT_FALSE(copied->findInterface(typeid(VModuleHold))) << "nobody holds its module";
    }
}

TEST_F(TypedSlots, TakeWhatIsPluggedIn)
{
    const RefPtr<Doubler> second(new Doubler("second", 0, {}));
    object->enableRequestProcessing();
    ASSERT_EQ(second->attach("in", *object, "out"), VSlotContainer::AttachToOutput);

    VRequest request(pool, false);
    EXPECT_TRUE(second->init_request(request, 1.0));

    EXPECT_EQ(second->out.read(pool), 20);
    second->VManagedObject::remove();
}

/// A datum that may own an object.
struct Owning
{
    RefPtr<VManagedObject> object;
    bool operator!=(const Owning& other) const { return !(object == other.object); }
};

} // namespace

template <>
struct VValueTrait<Owning>
{
    static bool setValueFromText(Owning& /*datum*/, const string& /*text*/) { return false; }
    static string Text(const Owning& /*datum*/) { return {}; }
};

namespace
{

class OwnedByItsInput final : public VObject
{
public:
    using VObject::VObject;
    const InputSlot<Owning> owner{*this, "owner"};
};

TEST(TypedSlot, OutlastsADatumThatOwnsItsObject)
{
    RefPtr<OwnedByItsInput> made(new OwnedByItsInput("owned", 0, {}));
    const WeakPtr<OwnedByItsInput> object = made;
    const InputSlot<Owning>& owner = made->owner;
    owner.set({}, Owning{made});
    made->VManagedObject::remove();
    made = RefPtr<OwnedByItsInput>();
    ASSERT_TRUE(object);

    owner.set({}, Owning{});

    EXPECT_FALSE(object);
}

} // namespace
} // namespace Quorl
