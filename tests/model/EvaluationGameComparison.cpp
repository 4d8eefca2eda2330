#include <tests/model/EvaluationGame.h>

#include <tests/model/At.h>

#include <string>
#include <utility>
#include <vector>

/// Everything of the kernel that an evaluation leaves behind, against the model.
namespace QuorlTest::Evaluation
{

using Quorl::Ageable;
using Quorl::RefPtr;
using Quorl::VObject;
using Quorl::VRequest;

void Game::expect(const std::string& what, const std::string& found, const std::string& wanted)
{
    if (found == wanted || !difference_.empty()) return;
    difference_ = what + " is\n" + found + "\nand by the model\n" + wanted;
}

void Game::expect(const std::string& what, long long found, long long wanted)
{
    if (found != wanted) expect(what, std::to_string(found), std::to_string(wanted));
}

int Game::numberOf(int serial) const
{
    const auto entry = numbers_.find(serial);
    return entry == numbers_.end() ? -1 : entry->second;
}

void Game::compare()
{
    const auto lines = [](const std::vector<std::string>& events) {
        std::string text;
        for (const std::string& event : events) text += event + "\n";
        return text;
    };
    expect("what ran", lines(std::exchange(events_, {})), lines(std::exchange(model_.events, {})));
    expect("the clock", Ageable::GlobalTime.stamp(), model_.clock);
    for (std::size_t number = 0; number < objects_.size(); ++number)
        compareObject(static_cast<int>(number));
    for (std::size_t number = 0; number < parameters_.size(); ++number)
        for (int pool = 0; pool <= kPools; ++pool)
            expect("the age of parameter " + std::to_string(number) + " in pool " +
                       std::to_string(pool),
                   parameters_[number]->age(pools_[at(pool)]).stamp(),
                   model_.ageOf(model_.parameters[number], pool));
}

void Game::compareObject(int number)
{
    const VObject& object = *objects_[at(number)];
    const Object& model = model_.objects[at(number)];
    const std::string name = " of " + model.name;
    for (int pool = 0; pool <= kPools; ++pool)
        expect("the age" + name + " in pool " + std::to_string(pool),
               object.age(pools_[at(pool)]).stamp(), model_.age(number, pool));
    expect("the connection age" + name, object.ConnectionAge().stamp(), model.connection);
    expect("the depth" + name, object.Executor.Level, model.level);
    expect("the age of the validator" + name, validators_[at(number)]->stamp(), model.validatorAge);
    expect("the taint" + name, numberOf(validators_[at(number)]->Taint) + 1, model.taint);
    expect("whether an evaluation is inside" + name, static_cast<bool>(object.Current),
           model.inside >= 0);
    compareTables("of the latest evaluation" + name, object.Latest, model.latest);
    compareTables("of the evaluation before" + name, object.Previous, model.previous);
    expect("the requests inside" + name, object.RequestCounter.value(), 0);
    expect("the updates inside" + name, object.UpdateCounter.value(), 0);
}

void Game::compareTables(const std::string& whose, const RefPtr<VRequest::ID>& id, int evaluation)
{
    expect("whether there is a table " + whose, static_cast<bool>(id), evaluation >= 0);
    if (!id || evaluation < 0) return;
    LevelTable found;
    for (const auto& [serial, level] : id->levels())
        found[numberOf(serial)] = {level.MinLevel, level.MaxLevel, level.Count,
                                   numberOf(level.MinCaller), numberOf(level.MaxCaller)};
    const auto text = [](const LevelTable& table) {
        std::string lines;
        for (const auto& [object, level] : table)
            lines += std::to_string(object) + ": " + std::to_string(level.min) + " to " +
                     std::to_string(level.max) + ", " + std::to_string(level.count) +
                     " times, from " + std::to_string(level.minCaller) + " and " +
                     std::to_string(level.maxCaller) + "\n";
        return lines;
    };
    if (found != model_.evaluations[at(evaluation)])
        expect("the table " + whose, text(found), text(model_.evaluations[at(evaluation)]));
}

} // namespace QuorlTest::Evaluation
