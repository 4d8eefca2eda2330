#include <quorl/values/VValue.h>

#include <quorl/registry/VManagedObject.h>
#include <quorl/values/ValuePool.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

namespace Quorl
{
namespace
{

template <class T>
RefPtr<VValue<T>> make(const T& datum)
{
    return RefPtr<VValue<T>>(new VValue<T>(datum));
}

template <class T>
T datumOf(const VTypedValueBase<T>& value)
{
    T datum{};
    EXPECT_TRUE(value.getValue(datum));
    return datum;
}

/// A component that agrees to belong to somebody.
class PartValue final : public VValue<double>
{
public:
    using VValue<double>::VValue;

    bool setContainerValue(const WeakPtr<VValueBase>& to) override
    {
        container = to;
        ++calls;
        return true;
    }
    RefPtr<VValueBase> copy() const override { return RefPtr<VValueBase>(new PartValue(*this)); }

    WeakPtr<VValueBase> container;
    int calls = 0;
};

TEST(VValue, DoesNotMoveItsAgeByBeingSet)
{
    const auto value = make(1.0);
    const Ageable before = value->age();
    Ageable().touch();

    value->setValue(2.0);
    value->setValueFromText("3");
    value->getValueFrom(make(4.0));

    EXPECT_EQ(value->age(), before);
    EXPECT_EQ(datumOf(*value), 4.0);
}

TEST(VValue, CopiesTheDatumWithThePresentClockAsAge)
{
    const auto value = make(1.5);
    Ageable().touch();

    const RefPtr<VValue<double>> copied = value->copy();

    EXPECT_EQ(datumOf(*copied), 1.5);
    EXPECT_EQ(copied->age(), Ageable::GlobalTime);
    EXPECT_LT(value->age(), copied->age());
}

TEST(VValue, CopiesNoComponents)
{
    const auto value = make(1.0);
    value->components.setValue("part", make(2.0));

    EXPECT_EQ(value->copy()->components.nComponents(), 0U);
    EXPECT_EQ(value->components.nComponents(), 1U);
}

TEST(VValue, TakesTheDatumOfItsOwnTypeOnly)
{
    const auto value = make(1.0);

    EXPECT_FALSE(value->getValueFrom(WeakPtr<VValueBase>()));
    EXPECT_FALSE(value->getValueFrom(make(7)));
    EXPECT_EQ(datumOf(*value), 1.0);
    EXPECT_TRUE(value->getValueFrom(make(2.0)));
    EXPECT_EQ(datumOf(*value), 2.0);
}

TEST(VValue, TakesWhatIsNoNumberForZero)
{
    const RefPtr<VValue<double>> value(new VValue<double>(3.0));
    EXPECT_TRUE(value->setValueFromText("abc"));
    EXPECT_EQ(value->Text(), "0");
}

TEST(VValue, DiffersFromOtherTypesAndFromNoValue)
{
    const auto value = make(1.0);
    WeakPtr<VValueBase> dead;
    {
        const auto shortLived = make(1.0);
        dead = shortLived;
    }

    EXPECT_TRUE(value->isDifferentFrom(WeakPtr<VValueBase>()));
    EXPECT_TRUE(value->isDifferentFrom(dead));
    EXPECT_TRUE(value->isDifferentFrom(make(1)));
    EXPECT_TRUE(value->isDifferentFrom(make(1.5)));
    EXPECT_FALSE(value->isDifferentFrom(make(1.0)));
    EXPECT_FALSE(value->isDifferentFrom(value));
}

TEST(VValue, DiffersFromItselfIfNotANumber)
{
    const auto value = make(std::numeric_limits<double>::quiet_NaN());

    EXPECT_TRUE(value->isDifferentFrom(value));
}

TEST(VValue, LeavesAValueThatNobodyOwnsAlone)
{
    VValue<double> first(1.0);
    const VValue<double> second(2.0);

    EXPECT_TRUE(first.isDifferentFrom(&second));
    EXPECT_TRUE(first.getValueFrom(&second));
    EXPECT_FALSE(first.isDifferentFrom(&second));
    EXPECT_TRUE(first.getValueFrom(&first));
    EXPECT_EQ(datumOf(first), 2.0);
    EXPECT_EQ(second.self.referer->strong, 0);
}

TEST(VValue, GivesChunksOfCopies)
{
    const auto value = make(2.5);

    const RefPtr<Tolmen::Chunk<double>> chunk = value->getChunkOfValue(3);
    EXPECT_EQ(chunk->base_vector(), std::vector<double>(3, 2.5));
    EXPECT_EQ(value->getChunk(0)->elements(), 0U);
    EXPECT_EQ(value->getChunk(2)->getType(), typeid(double));
}

TEST(VValue, HasNoSourceAndNoInterfaceAndBelongsToNobody)
{
    const auto value = make(1.0);

    EXPECT_FALSE(value->source());
    EXPECT_FALSE(value->setSource(WeakPtr<VManagedObject>()));
    EXPECT_FALSE(value->getInterface());
    EXPECT_FALSE(value->setInterface(RefPtr<Tolmen::InterfaceBase>()));
    EXPECT_FALSE(value->setContainerValue(value));
    EXPECT_EQ(value->getType(), typeid(double));
}

TEST(VValue, CountsAllThatEndInTheCreatorOfTheType)
{
    TypedValueCreator<double>& creator = VValue<double>::theTypedValueCreator;
    const int before = creator.destroyedValues;
    {
        const VValue<double> onTheStack(1.0);
        make(2.0);
    }

    EXPECT_EQ(creator.destroyedValues - before, 2);
    EXPECT_EQ(make(1.0)->getValueCreator(), WeakPtr<VValueCreator>(&creator));
}

TEST(VValueBase, GivesItselfAsTheComponentWithoutName)
{
    const auto value = make(1.0);
    const RefPtr<ValuePool> pool(new ValuePool);
    pool->registerValue("v", value);

    EXPECT_EQ(value->component(""), value);
    EXPECT_EQ(pool->retrieveValue("v")->component(""), value);
}

TEST(VValueBase, NeverGivesAComponentThatBelongsToNobody)
{
    const auto value = make(1.0);
    value->components.setValue("plain", make(2.0));

    EXPECT_FALSE(value->component("plain"));
    EXPECT_FALSE(value->component("absent"));
}

TEST(VValueBase, TellsAComponentItsContainerAtEachCall)
{
    const auto value = make(1.0);
    const RefPtr<PartValue> part(new PartValue(2.0));
    value->components.setValue("part", part);

    EXPECT_EQ(value->component("part"), part);
    EXPECT_EQ(value->component("part"), part);
    EXPECT_EQ(part->calls, 2);
    EXPECT_EQ(part->container, value);
}

TEST(VValueBase, KeepsTheAgeOfNoValueFromItsFirstUse)
{
    const Ageable first = VValueBase::Undefined();
    Ageable().touch();

    EXPECT_EQ(VValueBase::Undefined(), first);
    EXPECT_LT(Ageable::Ooooold, first);
}

TEST(VValueCreator, LeavesTheFlagAloneForAnUnknownType)
{
    bool ok = true;
    EXPECT_FALSE(VValueCreator::create("no such type", "1", ok));
    EXPECT_TRUE(ok);
    ok = false;
    EXPECT_FALSE(VValueCreator::create("no such type", "1", ok));
    EXPECT_FALSE(ok);
}

TEST(VValueCreator, KnowsTheKernelsTypesFromTheStart)
{
    bool ok = false;
    const RefPtr<VValue<double>> value = VValueCreator::create("double", "2.5", ok);

    ASSERT_TRUE(value);
    EXPECT_TRUE(ok);
    EXPECT_EQ(datumOf(*value), 2.5);
}

TEST(VValueCreator, GivesAValueAlsoForARefusedText)
{
    make('x'); // brings the type in
    bool ok = true;
    const RefPtr<VValue<char>> value = VValueCreator::create("char", "too long", ok);

    ASSERT_TRUE(value);
    EXPECT_FALSE(ok);
    EXPECT_EQ(datumOf(*value), '\0');
}

TEST(VValueCreator, MakesAndDropsAValueWhereTheReaderThrows)
{
    make(1U); // brings the type in
    TypedValueCreator<unsigned>& creator = VValue<unsigned>::theTypedValueCreator;
    const int before = creator.destroyedValues;
    bool ok = true;

    EXPECT_THROW(VValueCreator::create("unsigned int", "", ok), std::invalid_argument);
    EXPECT_TRUE(ok);
    EXPECT_EQ(creator.destroyedValues - before, 1);
}

TEST(VValueCreator, ClearsTheFlagIfTheCreatorHasEnded)
{
    {
        TypedValueCreator<double> shortLived;
        VValueCreator::registerCreator(&shortLived, "short-lived");
    }
    bool ok = true;

    EXPECT_FALSE(VValueCreator::create("short-lived", "1", ok));
    EXPECT_FALSE(ok);
}

TEST(VValueCreator, PutsALaterCreatorInThePlaceOfAnEarlierOne)
{
    TypedValueCreator<double> first;
    TypedValueCreator<int> second;
    VValueCreator::registerCreator(&first, "replaced");
    VValueCreator::registerCreator(&second, "replaced");
    bool ok = false;

    EXPECT_EQ(VValueCreator::create("replaced", "3", ok)->getType(), typeid(int));
}

} // namespace
} // namespace Quorl
