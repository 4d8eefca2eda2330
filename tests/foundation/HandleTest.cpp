#include <quorl/foundation/Cacheable.h>
#include <quorl/foundation/StrongPtr.h>

#include <tests/foundation/HandleTestTypes.h>
#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <csignal>
#include <new>
#include <set>
#include <typeinfo>

namespace QuorlTest
{
namespace
{

std::pair<int, int> counts(const WeakPtr<Root>& handle)
{
    return {handle.referer->strong, handle.referer->weak};
}

using Counts = std::pair<int, int>;

TEST(StrongPtr, CountsInBothCountersAndAWeakHandleInOne)
{
    const RefPtr<Root> first(new Root);
    EXPECT_EQ(counts(first), (Counts{1, 2}));
    const RefPtr<Root> second(first);
    EXPECT_EQ(counts(first), (Counts{2, 3}));
    {
        const WeakPtr<Root> weak(first);
        EXPECT_EQ(counts(first), (Counts{2, 4}));
        const RefPtr<Root> locked(weak);
        EXPECT_EQ(counts(first), (Counts{3, 5}));
    }
    EXPECT_EQ(counts(first), (Counts{2, 3}));
}

TEST(StrongPtr, ChangesNothingWhenAssignedItselfOrTheSameBlock)
{
    RefPtr<Root> first(new Left);
    const RefPtr<Root> same(first);
    const RefPtr<Left> typed(first);
    const Counts before = counts(first);
    const RefPtr<Root>& itself = first;
    first = itself;
    first = same;
    first = typed;
    WeakPtr<Root> weak(first);
    weak = typed;

    EXPECT_EQ(counts(first), (Counts{before.first, before.second + 1}));
}

TEST(StrongPtr, EndsWhatItHeldWhenItIsAssignedAnother)
{
    bool isDestroyed = false;
    auto* const root = new Root;
    root->whenDestroyed = [&] { isDestroyed = true; };
    RefPtr<Root> handle(root);
    handle = new Root;

    EXPECT_TRUE(isDestroyed);
    EXPECT_EQ(counts(handle), (Counts{1, 2}));
}

TEST(StrongPtr, LocksADeadObjectIntoADeadHandle)
{
    WeakPtr<Root> weak;
    {
        const RefPtr<Root> owner(new Root);
        weak = owner;
    }
    {
        const RefPtr<Root> locked(weak);
        EXPECT_TRUE(!locked);
        EXPECT_EQ(locked.rawptr(), nullptr);
        EXPECT_EQ(counts(weak), (Counts{-1, 2}));
        const RefPtr<Root> copied(locked);
        EXPECT_EQ(counts(weak), (Counts{-1, 3})) << "a weak share, no strong one";
    }
    EXPECT_EQ(counts(weak), (Counts{-1, 1}));
}

TEST(StrongPtr, LetsTheEndOfTheOldObjectComeBeforeTheNewOne)
{
    RefPtr<Root> child(new Root);
    const WeakPtr<Root> observer(child);
    auto* const parent = new Root;
    parent->whenDestroyed = [&] { child = RefPtr<Root>(); };
    RefPtr<Root> handle(parent);
    handle = observer;

    EXPECT_FALSE(handle) << "the parent took the child with it";
    EXPECT_EQ(handle, observer);
}

TEST(StrongPtr, CanBeAssignedFromAHandleThatEndsWithTheOldObject)
{
    struct Link : Root
    {
        RefPtr<Root> next;
    };
    auto* const first = new Link;
    RefPtr<Root> handle(first);
    const RefPtr<Root> second(new Root);
    first->next = second;
    handle = first->next;

    EXPECT_EQ(handle, second);
    EXPECT_TRUE(handle);
}

TEST(StrongPtr, MakesNothingOfANullPointer)
{
    const RefPtr<Root> fromNull(static_cast<Root*>(nullptr));
    const RefPtr<Root> byDefault;

    EXPECT_EQ(fromNull.referer, nullptr);
    EXPECT_EQ(fromNull, byDefault);
    EXPECT_TRUE(!fromNull);
    EXPECT_EQ(static_cast<void*>(fromNull), nullptr);
    EXPECT_EQ(RefPtr<Root>::getNullPtr(), byDefault);
}

TEST(ConvertingHandle, GivesTheObjectAsAnotherType)
{
    const RefPtr<Root> root(new Left);
    const RefPtr<Left> left(root);
    const WeakPtr<Left> weak(root);

    EXPECT_EQ(left->number, 1);
    EXPECT_EQ((*weak).number, 1);
    EXPECT_EQ(left.rawptr(), root.rawptr());
    EXPECT_EQ(static_cast<void*>(left), left.rawptr());
    EXPECT_EQ(counts(root), (Counts{2, 4}));
}

TEST(ConvertingHandle, IsNotAliveWhereTheCastFailsButHoldsTheBlock)
{
    const RefPtr<Root> root(new Left);
    const RefPtr<Right> failed(root);

    EXPECT_TRUE(!failed);
    EXPECT_EQ(static_cast<void*>(failed), nullptr);
    EXPECT_NE(root.rawptr(), nullptr);
    EXPECT_TRUE(root);
    EXPECT_EQ(failed, root);
    EXPECT_EQ(failed.rawptr(), nullptr);
    const RefPtr<Left> onwards(failed);
    EXPECT_TRUE(onwards) << "the block is asked, not the failed handle";
}

TEST(ConvertingHandle, IsNotAliveForADeadObject)
{
    WeakPtr<Root> dead;
    {
        const RefPtr<Root> owner(new Left);
        dead = owner;
    }
    const RefPtr<Left> left(dead);

    EXPECT_TRUE(!left);
    EXPECT_EQ(left, dead);
    EXPECT_EQ(left.referer->weak, 2);
}

TEST(ConvertingHandle, ConvertsAnewWhenItIsAssigned)
{
    RefPtr<Left> left;
    left = RefPtr<Root>(new Left);
    EXPECT_TRUE(left);
    left = RefPtr<Root>(new Right);
    EXPECT_FALSE(left);
    EXPECT_NE(left.referer, nullptr);
}

/// Hands itself out before the derived class is constructed.
struct EarlyMaker : Root
{
    explicit EarlyMaker(std::function<void(Root*)> act) { act(this); }
};
struct LateMade final : EarlyMaker
{
    using EarlyMaker::EarlyMaker;
};

TEST(ConvertingHandle, ThatWasMadeTooEarlyNeverBecomesAlive)
{
    WeakPtr<LateMade> early;
    const LateMade object([&](Root* root) { early = WeakPtr<Root>(root); });

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

TEST(ConvertingHandle, ReportsThatItsPointerIsNotThatOfAFreshCast)
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

TEST(Handles, AreEqualForOneObjectWhateverTheirTypeAndLife)
{
    RefPtr<Root> root(new Left);
    const RefPtr<Left> left(root);
    const WeakPtr<Right> wrong(root);
    const RefPtr<Root> other(new Root);

    EXPECT_TRUE(root == left);
    EXPECT_TRUE(left == wrong);
    EXPECT_TRUE(root != other);
    EXPECT_EQ(root < other, root.referer < other.referer);
    EXPECT_FALSE(root < left);
    delete root.rawptr();
    EXPECT_TRUE(root == left) << "dead as alive";
}

TEST(Handles, AreOrderedInMapsByTheirBlocks)
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

TEST(Handles, SayInWhichStateTheyAre)
{
    Speaker speaker;
    RefPtr<Root> handle;
    handle.Speak("a", "b");
    handle = new Left;
    handle.Speak("a", "b");
    EXPECT_EQ(*speaker.lastType, typeid(Left));
    delete handle.rawptr();
    handle.Speak("a", "b");

    EXPECT_EQ(speaker.reports, (std::vector<std::string>{"b/a/null", "b/a/1/2", "b/a/dead"}));
}

TEST(Handles, ReportToStandardErrorByDefault)
{
    const RefPtr<Root> handle;
    const std::string text = errorOutputOf([&] { handle.Speak("one", "two"); });

    EXPECT_NE(text.find("twoone"), std::string::npos) << text;
    EXPECT_EQ(text.find('\n'), text.size() - 1);
}

TEST(Handles, ReportABlockThatHasLostItsShares)
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

TEST(Handles, ReportThatTheyAreConstructedFromThemselves)
{
    Speaker speaker;
    alignas(RefPtr<Root>) static unsigned char storage[sizeof(RefPtr<Root>)];
    auto* const place = reinterpret_cast<RefPtr<Root>*>(storage);
    auto* const handle = new (storage) RefPtr<Root>(*place);

    EXPECT_EQ(speaker.reports, std::vector<std::string>{"self"});
    EXPECT_TRUE(!*handle);
    handle->~StrongPtr();
}

TEST(Handles, CannotRefOrUnrefTheDeadNorTheUnowned)
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
    EXPECT_EQ(dead.referer->strong, -1);
}

void use(const RefPtr<Left>& handle)
{
    handle->number = 5;
}

TEST(HandlesDeathTest, EndTheProcessAtOnceWhenADeadOneIsUsed)
{
    RefPtr<Root> root(new Left);
    const RefPtr<Left> left(root);
    const RefPtr<Left> null;
    delete root.rawptr();

    EXPECT_DEATH(use(left), "");
    EXPECT_DEATH(use(null), "");
    EXPECT_DEATH(root->extremeUnction(), "");
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_EXIT(use(left), testing::KilledBySignal(SIGSEGV), "");
#endif
}

class Picture final : public Tolmen::Cacheable
{
public:
    explicit Picture(std::string& l) : log(l) {}
    ~Picture() override { log += "destroyed"; }
    void CacheableDeferredConstructor() override
    {
        log += "deferred" + std::to_string(self.referer->strong) + " ";
    }
    void PreDestructor() override
    {
        log += self.referer->object == Tolmen::poisonedObject() ? "poisoned " : "whole ";
    }
    void extremeUnction() override { log += "unction "; }
    std::string& log;
};

TEST(Cacheable, IsConstructedByItsFirstStrongHandleAndEndedInTwoSteps)
{
    std::string log;
    {
        const WeakPtr<Picture> weak(new Picture(log));
        EXPECT_EQ(log, "");
        const RefPtr<Picture> strong(weak);
        EXPECT_EQ(log, "deferred0 ");
        const RefPtr<Tolmen::Cacheable> second(strong);
        EXPECT_EQ(log, "deferred0 ");
    }
    EXPECT_EQ(log, "deferred0 unction poisoned destroyed");
}

} // namespace
} // namespace QuorlTest
