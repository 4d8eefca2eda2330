#include <quorl/foundation/RefPtr.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
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

using Tolmen::RefPtr;
using Tolmen::WeakPtr;

class Node;
using NodeOwner = Tolmen::StrongPtr<Node, Node>; // `RefPtr<Node>`, before that is complete

/// What happens to objects, by their numbers.
struct Events
{
    std::vector<int> unctions;
    std::vector<int> destructions;
    std::vector<NodeOwner> relics; ///< kept from inside extreme unctions
};

class Node : public Tolmen::ReferenceBase<Node>
{
public:
    Node(Events& events, std::size_t number, bool keepsItself)
        : events_(events), number_(number), keepsItself_(keepsItself)
    {
    }
    ~Node() override { ++events_.destructions[number_]; }
    void extremeUnction() override
    {
        ++events_.unctions[number_];
        if (keepsItself_) events_.relics.emplace_back(this);
    }

    NodeOwner child; // of a higher number, so that nothing owns itself

private:
    Events& events_;
    const std::size_t number_;
    const bool keepsItself_;
};

class Branch : public Node
{
public:
    using Node::Node;
};
class Leaf final : public Branch
{
public:
    using Branch::Branch;
};
class Fruit final : public Node
{
public:
    using Node::Node;
};

enum Kind
{
    IsNode,
    IsBranch,
    IsLeaf,
    IsFruit,
    kKinds
};

/// A strong and a weak handle for each kind, in their order.
using Handle = std::variant<RefPtr<Node>, WeakPtr<Node>, RefPtr<Branch>, WeakPtr<Branch>,
                            RefPtr<Leaf>, WeakPtr<Leaf>, RefPtr<Fruit>, WeakPtr<Fruit>>;
constexpr std::size_t kHandleTypes = std::variant_size_v<Handle>;

bool isStrong(std::size_t type)
{
    return type % 2 == 0;
}

bool canBeCast(Kind object, std::size_t type)
{
    const auto wanted = static_cast<Kind>(type / 2);
    return wanted == IsNode || wanted == object || (wanted == IsBranch && object == IsLeaf);
}

/// Makes a handle of the type `type` in the place of the old one.
template <class Source>
void construct(Handle& place, std::size_t type, const Source& source)
{
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        ((I == type ? static_cast<void>(place.emplace<I>(source)) : void()), ...);
    }(std::make_index_sequence<kHandleTypes>());
}

constexpr int kNobody = -1;

/// What the counters of one object should be.
struct Life
{
    Kind kind;
    bool keepsItself;
    bool isOwnedElsewhere; // as on a stack: never held by a strong handle
    int strong = 0;
    int weak = 1; // with the object's own share
    int child = kNobody;
    int unctions = 0;
    int destructions = 0;

    bool isDead() const { return destructions > 0; }
};

class Model
{
public:
    Life& operator[](int number) { return lives_[static_cast<std::size_t>(number)]; }
    int add(const Life& life)
    {
        lives_.push_back(life);
        return size() - 1;
    }
    int size() const { return static_cast<int>(lives_.size()); }

    void take(int number, bool strongly)
    {
        if (number == kNobody) return;
        ++lifeOf(number).weak;
        own(number, strongly);
    }

    void drop(int number, bool strongly)
    {
        if (number == kNobody) return;
        if (strongly && !lifeOf(number).isDead() && --lifeOf(number).strong == 0) end(number);
        --lifeOf(number).weak;
    }

    /// A share of `old` becomes one of `next`; the end of the old object comes first.
    void exchange(int& old, int next, bool strongly)
    {
        if (old == next) return;
        if (next != kNobody) ++lifeOf(next).weak;
        drop(std::exchange(old, next), strongly);
        if (next != kNobody) own(next, strongly);
    }

    void destroy(int number)
    {
        Life& life = lifeOf(number);
        ++life.destructions;
        drop(std::exchange(life.child, kNobody), true);
        --lifeOf(number).weak;
    }

    void dropRelics()
    {
        for (const int number : std::exchange(relics_, {})) drop(number, true);
    }

private:
    Life& lifeOf(int number) { return (*this)[number]; }

    void own(int number, bool strongly)
    {
        if (strongly && !lifeOf(number).isDead()) ++lifeOf(number).strong;
    }

    void end(int number)
    {
        Life& life = lifeOf(number);
        ++life.unctions;
        if (life.keepsItself)
        {
            ++life.weak;
            relics_.push_back(number);
        }
        destroy(number);
    }

    std::vector<Life> lives_;
    std::vector<int> relics_;
};

class Game
{
public:
    explicit Game(unsigned seed) : random_(seed) { numbers_.fill(kNobody); }

    void play(int moves)
    {
        for (int i = 0; i < moves && !testing::Test::HasFailure(); ++i)
        {
            move();
            check();
        }
        finish();
    }

private:
    static constexpr int kPlaces = 12;

    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
    std::size_t pickPlace() { return static_cast<std::size_t>(pick(kPlaces)); }

    void move()
    {
        switch (pick(12))
        {
            case 0:
            case 1: return make(pickPlace());
            case 2:
            case 3:
            case 4: return constructFrom(pickPlace(), pickPlace());
            case 5:
            case 6:
            case 7: return assignFrom(pickPlace(), pickPlace());
            case 8: return assignNull(pickPlace());
            case 9: return adopt(pickPlace(), pickPlace());
            case 10: return pick(3) == 0 ? destroy(numbers_[pickPlace()]) : void();
            default: return pick(5) == 0 ? dropRelics() : void();
        }
    }

    void make(std::size_t place)
    {
        const Life life{static_cast<Kind>(pick(kKinds)), pick(4) == 0, pick(4) == 0};
        const int number = model_.add(life);
        const std::size_t type = pickType(number);
        events_.unctions.push_back(0);
        events_.destructions.push_back(0);
        Node* const object = newObject(life, static_cast<std::size_t>(number));
        objects_.push_back(object);
        owners_.emplace_back(life.isOwnedElsewhere ? object : nullptr);

        replace(place, number, type, object);
    }

    Node* newObject(const Life& life, std::size_t number)
    {
        switch (life.kind)
        {
            case IsBranch: return new Branch(events_, number, life.keepsItself);
            case IsLeaf: return new Leaf(events_, number, life.keepsItself);
            case IsFruit: return new Fruit(events_, number, life.keepsItself);
            default: return new Node(events_, number, life.keepsItself);
        }
    }

    /// A type of handle that may be made to the object.
    std::size_t pickType(int number)
    {
        const auto type = static_cast<std::size_t>(pick(static_cast<int>(kHandleTypes)));
        return number != kNobody && model_[number].isOwnedElsewhere ? type | 1 : type;
    }

    template <class Source>
    void replace(std::size_t place, int number, std::size_t type, const Source& source)
    {
        const bool wasStrong = isStrong(handles_[place].index());
        construct(handles_[place], type, source);
        model_.drop(std::exchange(numbers_[place], number), wasStrong);
        model_.take(number, isStrong(type));
    }

    void constructFrom(std::size_t target, std::size_t source)
    {
        if (target == source) return;
        const int number = numbers_[source];
        const std::size_t type = pickType(number);
        std::visit([&](const auto& from) { replace(target, number, type, from); },
                   handles_[source]);
    }

    /// Of any type to any type, itself included.
    void assignFrom(std::size_t target, std::size_t source)
    {
        const int number = numbers_[source];
        const bool strongly = isStrong(handles_[target].index());
        if (strongly && number != kNobody && model_[number].isOwnedElsewhere) return;
        std::visit([](auto& to, const auto& from) { to = from; }, handles_[target],
                   handles_[source]);
        model_.exchange(numbers_[target], number, strongly);
    }

    void assignNull(std::size_t place)
    {
        std::visit([](auto& handle) { handle = std::decay_t<decltype(handle)>(); },
                   handles_[place]);
        model_.exchange(numbers_[place], kNobody, isStrong(handles_[place].index()));
    }

    /// Makes one object the owner of another.
    void adopt(std::size_t parentPlace, std::size_t childPlace)
    {
        const int parent = numbers_[parentPlace];
        const int child = numbers_[childPlace];
        if (parent == kNobody || model_[parent].isDead() || parent >= child) return;
        if (model_[child].isOwnedElsewhere) return;
        std::visit([&](const auto& from) { objectOf(parent)->child = from; }, handles_[childPlace]);
        model_.exchange(model_[parent].child, child, true);
    }

    /// Without any handle, whether there are some or not.
    void destroy(int number)
    {
        if (number == kNobody || model_[number].isDead()) return;
        if (model_[number].isOwnedElsewhere)
            owners_[static_cast<std::size_t>(number)].reset();
        else
            delete objectOf(number);
        model_.destroy(number);
    }

    void dropRelics()
    {
        events_.relics.clear();
        model_.dropRelics();
    }

    Node* objectOf(int number) const { return objects_[static_cast<std::size_t>(number)]; }

    void check()
    {
        for (std::size_t place = 0; place < handles_.size(); ++place)
            std::visit([&](const auto& handle) { checkHandle(handle, place); }, handles_[place]);
        checkObjects();
    }

    template <class AnyHandle>
    void checkHandle(const AnyHandle& handle, std::size_t place)
    {
        const int number = numbers_[place];
        ASSERT_EQ(handle.referer == nullptr, number == kNobody);
        if (!handle.referer) return;

        const Life& life = model_[number];
        const bool isAlive = !life.isDead() && canBeCast(life.kind, handles_[place].index());
        EXPECT_EQ(handle.referer->strong, life.isDead() ? -1 : life.strong);
        EXPECT_EQ(handle.referer->weak, life.weak);
        EXPECT_EQ(!handle, !isAlive);
        EXPECT_EQ(static_cast<void*>(handle) != nullptr, isAlive);
        EXPECT_EQ(handle.rawptr(), isAlive ? objectOf(number) : nullptr);
        for (std::size_t other = 0; other < handles_.size(); ++other)
            std::visit(
                [&](const auto& that) { EXPECT_EQ(handle == that, number == numbers_[other]); },
                handles_[other]);
    }

    void checkObjects()
    {
        int blocks = 0;
        int alive = 0;
        for (int number = 0; number < model_.size(); ++number)
        {
            const Life& life = model_[number];
            blocks += life.weak > 0 ? 1 : 0;
            alive += life.isDead() ? 0 : 1;
            const auto index = static_cast<std::size_t>(number);
            EXPECT_EQ(events_.unctions[index], life.unctions) << number;
            EXPECT_EQ(events_.destructions[index], life.destructions) << number;
            EXPECT_TRUE(life.isDead() || objectOf(number)->ID == firstID_ + number) << number;
        }
        EXPECT_EQ(Tolmen::RefererObjects - blocks_, blocks);
        EXPECT_EQ(Tolmen::CheckRefcountedObjects - alive_, alive);
        EXPECT_EQ(Node::MaxObjectCountID - firstID_, model_.size());
    }

    /// Nothing is left, whatever the moves were.
    void finish()
    {
        for (std::size_t place = 0; place < handles_.size(); ++place) assignNull(place);
        for (int number = 0; number < model_.size(); ++number) destroy(number);
        dropRelics(); // those that the last destructions have left, too
        check();
        EXPECT_EQ(Tolmen::RefererObjects, blocks_);
        EXPECT_TRUE(std::all_of(events_.destructions.begin(), events_.destructions.end(),
                                [](int count) { return count == 1; }));
    }

    std::mt19937 random_;
    const std::int32_t blocks_ = Tolmen::RefererObjects;
    const std::int32_t alive_ = Tolmen::CheckRefcountedObjects;
    const std::int32_t firstID_ = Node::MaxObjectCountID;
    Model model_;
    Events events_;
    std::vector<Node*> objects_;                // by number; the dead dangle
    std::vector<std::unique_ptr<Node>> owners_; // by number
    std::array<Handle, kPlaces> handles_;
    std::array<int, kPlaces> numbers_{}; // of the objects that the handles refer to
};

TEST(HandleModel, CountsAsPlainNumbersDo)
{
    for (unsigned seed = 1; seed <= 400; ++seed)
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Game(seed).play(150);
        if (HasFailure()) break;
    }
}

} // namespace
} // namespace QuorlTest
