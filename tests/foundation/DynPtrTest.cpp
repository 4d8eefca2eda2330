#include <quorl/foundation/DynPtr.h>

#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <csignal>
#include <map>
#include <set>
#include <tuple>
#include <typeinfo>
#include <utility>

namespace QuorlTest
{
namespace
{

TEST(DynPtr, IsOneWordWideForARootAndTwoElsewhere)
{
    static_assert(sizeof(RefPtr<Root>) == sizeof(void*));
    static_assert(sizeof(WeakPtr<Root>) == sizeof(void*));
    static_assert(sizeof(RefPtr<Left>) == 2 * sizeof(void*));
    static_assert(sizeof(WeakPtr<Left>) == 2 * sizeof(void*));
}

TEST(DynPtr, IsNullUntilItIsGivenABlock)
{
    const RefPtr<Root> byDefault;

    EXPECT_TRUE(!byDefault);
    EXPECT_EQ(byDefault.rawptr(), nullptr);
    EXPECT_EQ(static_cast<void*>(byDefault), nullptr);
    EXPECT_EQ(RefPtr<Root>::getNullPtr(), byDefault);
    EXPECT_EQ(RefPtr<Left>::getNullPtr().referer, nullptr);
    EXPECT_EQ(&RefPtr<Left>::getNullPtr(), &WeakPtr<Left>::getNullPtr());
}

TEST(DynPtr, IsTrueWhileTheObjectLives)
{
    const RefPtr<Root> root(new Left);
    const RefPtr<Left> left(root);
    EXPECT_FALSE(!root);
    EXPECT_FALSE(!left);
    EXPECT_NE(static_cast<void*>(root), nullptr);
    EXPECT_EQ(static_cast<void*>(left), left.rawptr());
    delete root.rawptr();

    EXPECT_TRUE(!root);
    EXPECT_TRUE(!left);
    EXPECT_EQ(static_cast<void*>(root), nullptr);
    EXPECT_EQ(static_cast<void*>(left), nullptr);
    EXPECT_EQ(root.rawptr(), nullptr);
    EXPECT_EQ(left.rawptr(), nullptr);
}

TEST(DynPtr, IsNotAliveWithoutAnObject)
{
    Tolmen::Referer block;
    block.weak = 1;
    Tolmen::DynPtr<Root, Root> handle;
    handle.referer = &block;

    EXPECT_TRUE(!handle);
    EXPECT_EQ(handle.rawptr(), nullptr);
    handle.referer = nullptr;
}

TEST(DynPtr, DoesNotRefOrUnrefTheDeadNorUnrefTheUnowned)
{
    Root root;
    root.self.unref();
    EXPECT_EQ(root.self.referer->strong, 0);
    WeakPtr<Root> dead;
    {
        const RefPtr<Root> owner(new Root);
        dead = owner;
    }
    dead.ref();
    dead.unref();
    EXPECT_EQ(counts(dead), (Counts{-1, 1}));

    Tolmen::DynPtr<Root, Root> null;
    null.ref();
    null.unref();
    null.wunref();
    EXPECT_EQ(null.referer, nullptr);
}

TEST(DynPtr, ClearsItsPointerWithTheLastShareOfABlock)
{
    const auto blocks = Tolmen::RefererObjects;
    Tolmen::Referer* const block = Tolmen::RefererPool::take();
    block->weak = 2;
    Tolmen::RefererObjects = blocks + 1;
    Tolmen::DynPtr<Root, Root> handle;
    handle.referer = block;
    handle.wunref();
    EXPECT_EQ(handle.referer, block);
    EXPECT_EQ(Tolmen::RefererObjects, blocks + 1);
    handle.wunref();

    EXPECT_EQ(handle.referer, nullptr);
    EXPECT_EQ(Tolmen::RefererObjects, blocks);
}

TEST(DynPtr, IsEqualForOneObjectWhateverItsTypeAndLife)
{
    RefPtr<Root> root(new Left);
    const RefPtr<Left> left(root);
    const WeakPtr<Right> wrong(root);
    const RefPtr<Root> other(new Root);

    EXPECT_TRUE(root == left);
    EXPECT_TRUE(left == wrong);
    EXPECT_TRUE(root == root->self);
    EXPECT_TRUE(root != other);
    EXPECT_EQ(root < other, root.referer < other.referer);
    EXPECT_EQ(other < left, other.referer < left.referer);
    EXPECT_FALSE(root < left);
    EXPECT_FALSE(left < root);
    EXPECT_TRUE(RefPtr<Root>() == WeakPtr<Left>()) << "null is null";
    EXPECT_TRUE(RefPtr<Root>() < root);
    delete root.rawptr();
    EXPECT_TRUE(root == left) << "dead as alive";
}

TEST(DynPtr, OrdersMapsByTheAddressesOfBlocks)
{
    std::vector<RefPtr<Root>> owners;
    std::set<WeakPtr<Root>> handles;
    for (int i = 0; i < 100; ++i)
    {
        owners.emplace_back(new Root);
        handles.insert(owners.back());
    }
    const Tolmen::Referer* before = nullptr;
    for (const WeakPtr<Root>& handle : handles)
    {
        EXPECT_LT(before, handle.referer);
        before = handle.referer;
    }
}

TEST(DynPtr, HasOneOrderInTuplesAsWellAndDeadOrAlive)
{
    RefPtr<Root> first(new Root);
    RefPtr<Root> second(new Root);
    const WeakPtr<Root> one = first;
    const WeakPtr<Root> other = second;
    const bool isBefore = one < other;
    for (const bool isAlive : {true, false})
    {
        EXPECT_EQ(one < other, isBefore) << isAlive;
        EXPECT_EQ(one > other, !isBefore) << isAlive;
        EXPECT_EQ(other <= one, !isBefore) << isAlive;
        EXPECT_EQ(std::tie(one, other) < std::tie(other, one), isBefore) << isAlive;
        EXPECT_EQ(std::pair(1, one) < std::pair(1, other), isBefore) << isAlive;
        first = RefPtr<Root>();
        second = RefPtr<Root>();
    }
}

TEST(DynPtr, StaysAKeyOfAMapWhenItsObjectHasDied)
{
    std::map<WeakPtr<Root>, int> map;
    RefPtr<Root> owner(new Root);
    const WeakPtr<Root> observer(owner);
    map[observer] = 7;
    map[RefPtr<Root>(new Root)] = 8;
    owner = RefPtr<Root>();

    EXPECT_EQ(map.at(observer), 7);
    EXPECT_EQ(map.size(), 2U);
    EXPECT_EQ(map.erase(observer), 1U);
}

TEST(DynPtr, ThatWasMadeTooEarlyNeverBecomesAlive)
{
    WeakPtr<LateMade> early;
    const LateMade object([&](Root* root) {
        early = WeakPtr<Root>(root);
        EXPECT_EQ(early.rawptr(), nullptr) << "neither does a fresh cast succeed yet";
    });

    EXPECT_TRUE(!early);
    EXPECT_THROW(static_cast<void>(early.rawptr()), std::bad_typeid)
        << "the cast would succeed by now";
    EXPECT_EQ(WeakPtr<LateMade>(&object).rawptr(), &object);
}

/// Looks at a handle to its derived class when that has ended already.
struct Ending : Root
{
    ~Ending() override
    {
        if (look) look();
    }
    std::function<void()> look;
};
struct Ended final : Ending
{
};

TEST(DynPtr, ReportsThatItsPointerIsNotThatOfAFreshCast)
{
    Speaker speaker;
    WeakPtr<Ended> handle;
    bool isKept = false;
    {
        Ended object;
        handle = &object;
        object.look = [&] { isKept = handle.rawptr() == &object; };
    }

    EXPECT_EQ(speaker.reports, std::vector<std::string>{"inconsistent"});
    EXPECT_TRUE(isKept) << "the kept pointer is given";
    EXPECT_EQ(*speaker.lastTypes[1], typeid(Ended));
    EXPECT_EQ(*speaker.lastTypes[2], typeid(Ending));
    EXPECT_EQ(speaker.lastFresh, nullptr);
    EXPECT_TRUE(speaker.isSame);
}

TEST(DynPtr, AsksForNoFreshCastInATruthTest)
{
    Speaker speaker;
    WeakPtr<Ended> handle;
    {
        Ended object;
        handle = &object;
        object.look = [&] {
            EXPECT_FALSE(!handle);
            EXPECT_NE(static_cast<void*>(handle), nullptr);
        };
    }
    EXPECT_TRUE(speaker.reports.empty());
}

TEST(DynPtr, SaysInWhichStateItIs)
{
    Speaker speaker;
    RefPtr<Root> handle;
    handle.Speak("a", "b");
    handle = new Left;
    handle.Speak("a", "b");
    EXPECT_EQ(*speaker.lastType, typeid(Left));
    const RefPtr<Right> failed(handle);
    failed.Speak("a", "b");
    EXPECT_EQ(*speaker.lastType, typeid(Left));
    delete handle.rawptr();
    handle.Speak("a", "b");

    EXPECT_EQ(speaker.reports,
              (std::vector<std::string>{"b/a/null", "b/a/1/2", "b/a/2/3", "b/a/dead"}));
}

TEST(DynPtr, ReportsABlockThatHasLostItsShares)
{
    Speaker speaker;
    Tolmen::Referer block;
    {
        Tolmen::DynPtr<Root, Root> handle;
        handle.referer = &block;
    }
    EXPECT_EQ(speaker.reports, std::vector<std::string>{"critical"});
    EXPECT_EQ(*speaker.lastType, typeid(void));
    EXPECT_EQ(speaker.lastReferer, &block);
}

TEST(DynPtr, ReportsNothingInAnOrdinaryLife)
{
    Speaker speaker;
    {
        const Left onTheStack;
        const WeakPtr<Root> weak(&onTheStack);
        const RefPtr<Root> owner(new Right);
        const RefPtr<Left> failed(owner);
        RefPtr<Root> other(new Root);
        other = owner;
    }
    EXPECT_TRUE(speaker.reports.empty());
}

void use(const RefPtr<Left>& handle)
{
    handle->number = 5;
}

int number(const WeakPtr<Left>& handle)
{
    return (*handle).number;
}

TEST(DynPtrDeathTest, EndsTheProcessAtOnceWhenItIsUsedDead)
{
    RefPtr<Root> root(new Left);
    const RefPtr<Left> left(root);
    const RefPtr<Left> null;
    const RefPtr<Left> failed{RefPtr<Root>(new Right)};
    delete root.rawptr();

    EXPECT_DEATH(use(left), "");
    EXPECT_DEATH(use(null), "");
    EXPECT_DEATH(use(failed), "");
    EXPECT_DEATH(number(left), "");
    EXPECT_DEATH(number(failed), "");
    EXPECT_DEATH(root->extremeUnction(), "");
    EXPECT_DEATH(static_cast<void>(*root), "") << "even if nothing is done with it";
}

// A sanitizer takes the signal and ends the process in its own way.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(DynPtrDeathTest, FaultsAsAnAccessToNoMemoryDoes)
{
    const RefPtr<Left> null;
    WeakPtr<Root> dead;
    {
        const Root root;
        dead = &root;
    }
    EXPECT_EXIT(use(null), testing::KilledBySignal(SIGSEGV), "");
    EXPECT_EXIT(dead->extremeUnction(), testing::KilledBySignal(SIGSEGV), "");
}
#endif

} // namespace
} // namespace QuorlTest
