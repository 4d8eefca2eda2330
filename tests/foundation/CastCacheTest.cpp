#include <quorl/foundation/CastCache.h>

#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <memory>
#include <tuple>
#include <utility>

namespace QuorlTest
{
namespace
{

template <class T>
void expectCast(Root& object)
{
    for (int time = 0; time < 3; ++time)
        EXPECT_EQ((Tolmen::CastCache<T, Root>::cast(&object)), dynamic_cast<T*>(&object));
}

struct Service
{
    virtual ~Service() = default;
    int data[5] = {};
};
struct Deep : virtual Root
{
    int data[3] = {};
};
struct Deeper final : Deep, Service
{
};
struct Other final : Service, virtual Root
{
};

TEST(CastCache, AnswersAsTheCastDoes)
{
    Left left;
    Right right;
    Deeper deeper;
    Other other;
    for (Root* const object : {static_cast<Root*>(&left), static_cast<Root*>(&right),
                               static_cast<Root*>(&deeper), static_cast<Root*>(&other)})
    {
        expectCast<Left>(*object);
        expectCast<Right>(*object);
        expectCast<Deep>(*object);
        expectCast<Service>(*object);
        expectCast<Deeper>(*object);
    }
}

template <int Number>
struct Numbered final : Left
{
    char data[Number + 1] = {};
};

template <int... Numbers>
void expectCastsOf(std::integer_sequence<int, Numbers...>)
{
    std::tuple<Numbered<Numbers>...> objects;
    for (int round = 0; round < 2; ++round)
    {
        (expectCast<Left>(std::get<Numbers>(objects)), ...);
        (expectCast<Numbered<7>>(std::get<Numbers>(objects)), ...);
    }
}

TEST(CastCache, AnswersForMoreClassesThanItRemembers)
{
    expectCastsOf(std::make_integer_sequence<int, 200>());
}

TEST(CastCache, KnowsHowFarAnObjectIsBuilt)
{
    const auto early = [](Root* root) {
        EXPECT_EQ((Tolmen::CastCache<LateMade, Root>::cast(root)), nullptr);
    };
    for (int time = 0; time < 3; ++time)
    {
        LateMade made(early);
        EXPECT_EQ((Tolmen::CastCache<LateMade, Root>::cast(&made)), &made);
        made.whenDestroyed = [&made] { // by now it is a Root alone
            EXPECT_EQ((Tolmen::CastCache<LateMade, Root>::cast(&made)), nullptr);
        };
    }
}

TEST(CastCache, ForgetsWhenCodeHasLeft)
{
    Left left;
    expectCast<Left>(left);
    expectCast<Right>(left);
    Tolmen::theUnloadCount.fetch_add(1);
    expectCast<Left>(left);
    expectCast<Right>(left);
}

/// Too far from its root for a short answer.
struct Wide : Root
{
    char data[40000] = {};
};
struct WideWithService final : Wide, Service
{
};

TEST(CastCache, AnswersForWideObjects)
{
    const auto wide = std::make_unique<WideWithService>();
    expectCast<Service>(*wide);
    expectCast<Wide>(*wide);
}

} // namespace
} // namespace QuorlTest
