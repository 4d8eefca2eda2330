#include <tests/model/At.h>
#include <tests/support/Node.h>
#include <tests/support/Observer.h>

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

/// Random edits of parameters in several pools, against a plain model of values, ages and of what
/// observers are told.
namespace QuorlTest
{
namespace
{

using Quorl::Ageable;
using Quorl::RefPtr;
using Quorl::ValuePool;
using Quorl::VParameter;
using Quorl::VValueBase;

constexpr int kPools = 3;
constexpr int kParameters = 4;
constexpr int kNoPool = -1;

struct Datum
{
    int number;
    long long age;

    bool operator==(const Datum&) const = default;
};

/// What an observer is told: the value with its age at that moment, and the pool.
using Told = std::tuple<std::string, long long, int>;

/// A parameter as it should be.
struct Expected
{
    Datum shared;
    bool isLocal = false;
    std::map<int, Datum> variables; // by pool
    std::vector<Told> told;

    Datum& valueIn(int pool)
    {
        const auto variable = variables.find(pool);
        return isLocal && variable != variables.end() ? variable->second : shared;
    }
    void tell(const Datum& datum, int pool)
    {
        told.emplace_back(std::to_string(datum.number), datum.age, pool);
    }
};

class Game
{
public:
    explicit Game(unsigned seed) : random_(seed)
    {
        for (int pool = 0; pool < kPools; ++pool) pools_.push_back(makePool());
        for (int parameter = 0; parameter < kParameters; ++parameter)
        {
            expected_.push_back({{parameter, clock_}, false, {}, {}});
            parameters_.push_back(makeParameter("p", parameter));
            observe(parameter);
        }
    }

    void play(int moves)
    {
        for (int i = 0; i < moves && !testing::Test::HasFailure(); ++i)
        {
            move();
            for (int parameter = 0; parameter < kParameters; ++parameter) check(parameter);
            EXPECT_EQ(Ageable::GlobalTime.stamp(), clock_);
        }
    }

private:
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    void observe(int parameter)
    {
        observers_[at(parameter)] = makeObserver();
        parameters_[at(parameter)]->addNotifier(observers_[at(parameter)]);
    }

    void move()
    {
        const int parameter = pick(0, kParameters - 1);
        const int pool = pick(kNoPool, kPools - 1);
        switch (pick(0, 11))
        {
            case 0: return localize(parameter);
            case 1: return pick(0, 3) == 0 ? globalize(parameter, pool) : localize(parameter);
            case 2:
            case 3: return read(parameter, pool);
            case 4: return askAge(parameter, pool);
            case 5: return touch(parameter, pool);
            case 6:
            case 7: return set(parameter, pool, pick(0, 1) == 0);
            case 8: return tellOfChange(parameter, pool);
            case 9: return activate(pick(0, kPools - 1), pool);
            case 10: return pick(0, 3) == 0 ? endPool(pick(0, kPools - 1)) : void();
            default: return pick(0, 3) == 0 ? copy(parameter, pick(0, kParameters - 1)) : void();
        }
    }

    void localize(int parameter)
    {
        parameters_[at(parameter)]->Localize();
        expected_[at(parameter)].isLocal = true;
    }

    void globalize(int parameter, int pool)
    {
        parameters_[at(parameter)]->Globalize(poolAt(pool));
        Expected& expected = expected_[at(parameter)];
        expected.isLocal = false;
        expected.variables.clear();
        expected.tell(expected.shared, kNoPool);
    }

    /// A variable comes into being where a local parameter is asked for its value.
    void makeVariable(Expected& expected, int pool) const
    {
        if (expected.isLocal && pool != kNoPool)
            expected.variables.try_emplace(pool, Datum{expected.shared.number, clock_});
    }

    void read(int parameter, int pool)
    {
        Expected& expected = expected_[at(parameter)];
        makeVariable(expected, pool);
        EXPECT_EQ(datumOf(parameters_[at(parameter)]->getValue(poolAt(pool), "")),
                  expected.valueIn(pool));
    }

    void askAge(int parameter, int pool)
    {
        EXPECT_EQ(parameters_[at(parameter)]->age(poolAt(pool)).stamp(),
                  expected_[at(parameter)].valueIn(pool).age);
    }

    void touch(int parameter, int pool)
    {
        parameters_[at(parameter)]->touchValue(poolAt(pool));
        expected_[at(parameter)].valueIn(pool).age = ++clock_;
    }

    void set(int parameter, int pool, bool create)
    {
        const int number = pick(0, 9); // often the number that it has already
        EXPECT_TRUE(parameters_[at(parameter)]->setValueFromText(
            std::to_string(number), poolAt(pool), "", create, {}, nullptr, nullptr));

        Expected& expected = expected_[at(parameter)];
        if (create) makeVariable(expected, pool);
        Datum& datum = expected.valueIn(pool);
        datum.number = number;
        expected.tell(datum, pool);
        datum.age = ++clock_;
    }

    void tellOfChange(int parameter, int pool)
    {
        VParameter& changed = *parameters_[at(parameter)];
        changed.notifyValueChange(changed.defaultValue, poolAt(pool), "", {}, nullptr, nullptr);
        Expected& expected = expected_[at(parameter)];
        expected.tell(expected.shared, pool);
        expected.valueIn(pool).age = ++clock_;
    }

    void activate(int pool, int old)
    {
        pools_[at(pool)]->activate(poolAt(old), {}, nullptr);
        if (pool == old) return;
        for (Expected& expected : expected_)
        {
            const auto variable = expected.variables.find(pool);
            if (variable != expected.variables.end())
                expected.tell(variable->second, pool);
            else if (expected.variables.contains(old))
                expected.tell(expected.shared, kNoPool);
        }
    }

    void endPool(int pool)
    {
        noteTold();
        pools_[at(pool)] = makePool();
        for (Expected& expected : expected_) expected.variables.erase(pool);
    }

    /// Puts a copy of a parameter in the place of another.
    void copy(int parameter, int place)
    {
        parameters_[at(place)] = parameters_[at(parameter)]->copy();
        observe(place);
        Expected copied = expected_[at(parameter)];
        copied.told.clear();
        copied.shared.age = clock_;
        for (auto& [pool, datum] : copied.variables) datum.age = clock_;
        expected_[at(place)] = copied;
    }

    void check(int parameter)
    {
        const VParameter& checked = *parameters_[at(parameter)];
        const Expected& expected = expected_[at(parameter)];
        EXPECT_EQ(checked.isLocal(), expected.isLocal);
        EXPECT_EQ(datumOf(checked.defaultValue), expected.shared);
        for (int pool = 0; pool < kPools; ++pool)
        {
            const RefPtr<VValueBase> variable =
                pools_[at(pool)]->findVariable(parameters_[at(parameter)]);
            const auto entry = expected.variables.find(pool);
            ASSERT_EQ(static_cast<bool>(variable), entry != expected.variables.end());
            if (variable) checkVariable(variable, entry->second);
        }
        EXPECT_EQ(toldTo(parameter), expected.told);
    }

    static void checkVariable(const RefPtr<VValueBase>& variable, const Datum& expected)
    {
        EXPECT_EQ(datumOf(variable), expected);
    }

    std::vector<Told> toldTo(int parameter) const
    {
        std::vector<Told> told;
        for (const Observer::Call& call : observers_[at(parameter)]->calls)
            told.emplace_back(call.text, call.age, numberOf(call.pool));
        return told;
    }

    /// What was told so far is forgotten, since the pools in it are about to end.
    void noteTold()
    {
        for (const RefPtr<Observer>& observer : observers_) observer->calls.clear();
        for (Expected& expected : expected_) expected.told.clear();
    }

    int numberOf(const Quorl::WeakPtr<ValuePool>& pool) const
    {
        for (int number = 0; number < kPools; ++number)
            if (pools_[at(number)] == pool) return number;
        EXPECT_EQ(pool.referer, nullptr);
        return kNoPool;
    }

    static Datum datumOf(const RefPtr<VValueBase>& value)
    {
        return {std::stoi(value->Text()), value->age().stamp()};
    }

    RefPtr<ValuePool> poolAt(int pool) const
    {
        return pool == kNoPool ? RefPtr<ValuePool>() : pools_[at(pool)];
    }

    std::mt19937 random_;
    long long clock_ = Ageable::GlobalTime.stamp();
    std::vector<RefPtr<ValuePool>> pools_;
    std::vector<RefPtr<VParameter>> parameters_;
    std::array<RefPtr<Observer>, kParameters> observers_;
    std::vector<Expected> expected_; // by parameter
};

TEST(ParameterModel, HasTheValuesAndAgesOfAPlainTable)
{
    for (unsigned seed = 1; seed <= 200; ++seed)
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Game(seed).play(150);
        if (HasFailure()) break;
    }
}

} // namespace
} // namespace QuorlTest
