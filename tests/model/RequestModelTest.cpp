#include <quorl/objects/VObject.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

/// Random networks in random histories, against a plain model of what a request runs.
namespace Quorl
{
namespace
{

using QuorlTest::Network;
using QuorlTest::Node;

constexpr int kContexts = 3;
constexpr long kNever = -1;

/// The model: plain numbers, and the rules in a few lines. An input is a parameter, provided by an
/// object or by nobody.
class Model
{
public:
    struct Input
    {
        int parameter;
        int source; ///< an object; -1 for none
        std::string name;
    };
    struct Object
    {
        std::vector<Input> inputs; ///< in the order of their names
        long connection = 0;
        std::map<int, long> age; ///< by context
        bool fails = false;
    };

    long& ageOf(int object, int context)
    {
        return objects[static_cast<std::size_t>(object)]
            .age.try_emplace(context, kNever)
            .first->second;
    }

    bool request(int number, int context)
    {
        Object& object = objects[static_cast<std::size_t>(number)];
        long& age = ageOf(number, context);
        long newest = age;
        bool acts = false;
        const auto consider = [&](long other) {
            if (other > age) acts = true;
            if (other > age) newest = std::max(newest, other);
        };
        const bool isNewlyConnected = age < object.connection;
        for (const Input& input : object.inputs)
        {
            consider(parameters[static_cast<std::size_t>(input.parameter)]);
            if (input.source < 0) continue;
            if (request(input.source, context)) acts = true;
            consider(ageOf(input.source, context));
        }
        if (isNewlyConnected) acts = true;
        if (isNewlyConnected) newest = std::max(newest, object.connection);
        if (!acts) return false;
        ran.push_back(number);
        if (object.fails) return false;
        age = std::max(age, newest);
        return true;
    }

    std::vector<Object> objects;
    std::vector<long> parameters; ///< ages
    std::vector<int> ran;
};

/// One random history, played on the kernel and on the model.
class Game
{
public:
    explicit Game(unsigned seed) : random_(seed)
    {
        for (int i = 0; i < kContexts; ++i) pools_.push_back(QuorlTest::makePool());
    }

    void play(int moves)
    {
        for (int i = pick(2, 4); i > 0; --i) addObject();
        for (int i = 0; i < moves && !testing::Test::HasFailure(); ++i) move();
    }

private:
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    int anyObject() { return pick(0, static_cast<int>(nodes_.size()) - 1); }

    void move()
    {
        switch (pick(0, 9))
        {
            case 0:
                if (nodes_.size() < 12) addObject();
                break;
            case 1:
            case 2: addInput(); break;
            case 3: reconnect(); break;
            case 4:
            case 5: touch(); break;
            case 6: toggleFailure(); break;
            default: request();
        }
    }

    void addObject()
    {
        const auto number = static_cast<int>(nodes_.size());
        nodes_.push_back(network_.node("n" + std::to_string(number)));
        Node& node = *nodes_.back();
        node.whenUpdated = [this, number](VRequest&) {
            ran_.push_back(number);
            return !model_.objects[static_cast<std::size_t>(number)].fails;
        };
        model_.objects.emplace_back();
        model_.objects.back().connection = node.ConnectionAge().stamp();
        outputs_.push_back(addParameter(node.output("out")));
    }

    int addParameter(const RefPtr<VParameter>& parameter)
    {
        parameters_.push_back(parameter);
        model_.parameters.push_back(parameter->defaultValue->age().stamp());
        return static_cast<int>(parameters_.size()) - 1;
    }

    /// Objects take from lower numbers alone, so that there are no cycles.
    void addInput()
    {
        const int number = anyObject();
        Node& node = *nodes_[static_cast<std::size_t>(number)];
        Model::Object& object = model_.objects[static_cast<std::size_t>(number)];
        if (object.inputs.size() > 4) return;
        const std::string name = "i" + std::to_string(object.inputs.size());
        const RefPtr<VSlot> slot = node.input(name);
        object.inputs.push_back({addParameter(slot->Parameter), -1, name});
        object.connection = node.ConnectionAge().stamp();
    }

    void reconnect()
    {
        const int number = anyObject();
        Node& node = *nodes_[static_cast<std::size_t>(number)];
        Model::Object& object = model_.objects[static_cast<std::size_t>(number)];
        if (object.inputs.empty() || number == 0) return;
        Model::Input& input = object.inputs[static_cast<std::size_t>(
            pick(0, static_cast<int>(object.inputs.size()) - 1))];
        input.source = pick(0, number - 1);
        input.parameter = outputs_[static_cast<std::size_t>(input.source)];
        int level = 0;
        node.getSlot(input.name, level)
            ->attachSource(parameters_[static_cast<std::size_t>(input.parameter)]);
        object.connection = node.ConnectionAge().stamp();
    }

    void touch()
    {
        const int number = pick(0, static_cast<int>(parameters_.size()) - 1);
        const RefPtr<VParameter>& parameter = parameters_[static_cast<std::size_t>(number)];
        parameter->touchValue({});
        model_.parameters[static_cast<std::size_t>(number)] =
            parameter->defaultValue->age().stamp();
    }

    void toggleFailure()
    {
        bool& fails = model_.objects[static_cast<std::size_t>(anyObject())].fails;
        fails = !fails;
    }

    void request()
    {
        const int number = anyObject();
        const int context = pick(0, kContexts - 1);
        const RefPtr<ValuePool>& pool = pools_[static_cast<std::size_t>(context)];
        ran_.clear();
        model_.ran.clear();

        const bool answer = QuorlTest::ask(nodes_[static_cast<std::size_t>(number)], pool);
        const bool expected = model_.request(number, context);

        EXPECT_EQ(answer, expected);
        EXPECT_EQ(ran_, model_.ran);
        for (std::size_t i = 0; i < nodes_.size(); ++i)
            EXPECT_EQ(nodes_[i]->age(pool).stamp(), model_.ageOf(static_cast<int>(i), context));
    }

    std::mt19937 random_;
    Network network_;
    Model model_;
    std::vector<RefPtr<Node>> nodes_;
    std::vector<RefPtr<VParameter>> parameters_;
    std::vector<int> outputs_; ///< of each object: the number of its parameter
    std::vector<RefPtr<ValuePool>> pools_;
    std::vector<int> ran_;
};

TEST(RequestModel, RunsWhatTheRulesSayInTheirOrder)
{
    for (unsigned seed = 1; seed <= 300; ++seed)
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Game(seed).play(150);
        if (HasFailure()) break;
    }
}

} // namespace
} // namespace Quorl
