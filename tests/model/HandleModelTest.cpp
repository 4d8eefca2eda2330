#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

/// Random lives of objects and handles, against a plain model that counts.
namespace QuorlTest
{
namespace
{

using Handle = std::variant<std::monostate, RefPtr<Root>, WeakPtr<Root>, RefPtr<Left>,
                            WeakPtr<Left>, RefPtr<Right>, WeakPtr<Right>>;

constexpr int kPlaces = 12;

bool isStrong(const Handle& handle)
{
    return handle.index() % 2 == 1;
}

class Game
{
public:
    explicit Game(unsigned seed) : random_(seed), blocks_(Tolmen::RefererObjects) {}

    ~Game()
    {
        for (Handle& handle : handles_) handle = std::monostate();
        EXPECT_EQ(Tolmen::RefererObjects, blocks_);
        for (const auto& [number, life] : lives_) EXPECT_EQ(life.destroyed, 1) << number;
    }

    void play(int moves)
    {
        for (int i = 0; i < moves && !testing::Test::HasFailure(); ++i)
        {
            move();
            check();
        }
    }

private:
    struct Life
    {
        bool isLeft;
        bool isDead = false;
        int destroyed = 0;
        int strong = 0;
        int weak = 1; ///< with the object's own
    };

    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    void move()
    {
        const auto target = static_cast<std::size_t>(pick(0, kPlaces - 1));
        const auto source = static_cast<std::size_t>(pick(0, kPlaces - 1));
        switch (pick(0, 5))
        {
            case 0: make(target); break;
            case 1: put(target, std::monostate(), -1); break;
            case 2: destroyDirectly(target); break;
            default: take(target, source);
        }
    }

    void make(std::size_t target)
    {
        const int number = ++lastNumber_;
        Life& life = lives_[number];
        life.isLeft = pick(0, 1) == 0;
        Root* const object = life.isLeft ? static_cast<Root*>(new Left) : new Right;
        object->whenDestroyed = [&life] { ++life.destroyed; };
        put(target, RefPtr<Root>(object), number);
    }

    /// Makes a handle of any type from that at `source`.
    void take(std::size_t target, std::size_t source)
    {
        const int number = numbers_[source];
        std::visit(
            [&](const auto& from) {
                if constexpr (!std::is_same_v<std::decay_t<decltype(from)>, std::monostate>)
                {
                    const auto copied = from; // the place may be its own target
                    switch (pick(0, 5))
                    {
                        case 0: return put(target, RefPtr<Root>(copied), number);
                        case 1: return put(target, WeakPtr<Root>(copied), number);
                        case 2: return put(target, RefPtr<Left>(copied), number);
                        case 3: return put(target, WeakPtr<Left>(copied), number);
                        case 4: return put(target, RefPtr<Right>(copied), number);
                        default: return put(target, WeakPtr<Right>(copied), number);
                    }
                }
            },
            handles_[source]);
    }

    /// Puts a handle in the place of another, and lets the model count.
    template <class NewHandle>
    void put(std::size_t target, NewHandle&& handle, int number)
    {
        Handle next(std::forward<NewHandle>(handle));
        if (number >= 0) share(number, next, +1);
        const int old = numbers_[target];
        if (old >= 0) share(old, handles_[target], -1);
        handles_[target] = std::monostate();
        handles_[target].swap(next);
        numbers_[target] = number;
    }

    void share(int number, const Handle& handle, int step)
    {
        Life& life = lives_[number];
        life.weak += step;
        if (!isStrong(handle) || life.isDead) return;
        life.strong += step;
        if (life.strong == 0) die(life);
    }

    static void die(Life& life)
    {
        life.isDead = true;
        --life.weak;
    }

    void destroyDirectly(std::size_t place)
    {
        if (pick(0, 3) != 0) return;
        Root* object = nullptr;
        if (const auto* const handle = std::get_if<RefPtr<Root>>(&handles_[place]))
            object = handle->rawptr();
        if (!object) return;
        die(lives_[numbers_[place]]);
        delete object;
    }

    void check()
    {
        for (std::size_t i = 0; i < handles_.size(); ++i)
        {
            if (numbers_[i] < 0) continue;
            const Life& life = lives_[numbers_[i]];
            std::visit(
                [&](const auto& handle) {
                    if constexpr (!std::is_same_v<std::decay_t<decltype(handle)>, std::monostate>)
                    {
                        EXPECT_EQ(handle.referer->strong, life.isDead ? -1 : life.strong);
                        EXPECT_EQ(handle.referer->weak, life.weak);
                        EXPECT_EQ(!handle, life.isDead || !fits(handles_[i], life.isLeft));
                    }
                },
                handles_[i]);
        }
        int blocks = 0;
        for (const auto& [number, life] : lives_)
        {
            blocks += life.weak > 0 ? 1 : 0;
            EXPECT_EQ(life.destroyed, life.isDead ? 1 : 0);
        }
        EXPECT_EQ(Tolmen::RefererObjects - blocks_, blocks);
    }

    static bool fits(const Handle& handle, bool isLeft)
    {
        return handle.index() <= 2 || (handle.index() <= 4) == isLeft;
    }

    std::mt19937 random_;
    const int blocks_;
    int lastNumber_ = 0;
    std::map<int, Life> lives_;
    std::array<Handle, kPlaces> handles_;
    std::array<int, kPlaces> numbers_ = [] {
        std::array<int, kPlaces> none{};
        none.fill(-1);
        return none;
    }();
};

TEST(HandleModel, CountsAsPlainNumbersDo)
{
    for (unsigned seed = 1; seed <= 300; ++seed)
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Game(seed).play(200);
        if (HasFailure()) break;
    }
}

} // namespace
} // namespace QuorlTest
