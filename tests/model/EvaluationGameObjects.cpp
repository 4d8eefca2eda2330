#include <tests/model/EvaluationGame.h>

#include <quorl/foundation/Cache.h>
#include <tests/model/At.h>

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

/// What a game is played with. It is made on the kernel, whose ages the model takes over.
namespace QuorlTest::Evaluation
{

using Quorl::Ageable;
using Quorl::RefPtr;
using Quorl::VObject;
using Quorl::VParameter;
using Quorl::VRequest;
using Quorl::VSlot;

namespace
{

constexpr int kMostObjects = 6;
constexpr int kMostInputs = 5;

} // namespace

/// Does in its updates what its game says.
class ScriptedObject final : public VObject
{
public:
    ScriptedObject(const std::string& givenName, Game& game, int number)
        : VObject(givenName, 0, {}), game_(game), number_(number)
    {
        insertUpdateFunction(&runFunction);
        enableRequestProcessing();
    }

    bool must_update(const VRequest& /*request*/, double /*precision*/) const override
    {
        return note("must") && does(kMust);
    }
    bool unsychronized_update(VRequest& /*request*/, double /*precision*/) override
    {
        return note("unlocked") && does(kUnlocked);
    }
    bool update(VRequest& request, double precision) override
    {
        note("update", " " + std::to_string(precision));
        const std::vector<Move> moves = model().updates;
        for (const Move& move : moves) game_.perform(move, dynamic_cast<CountedRequest*>(&request));
        switch (model().behaviour[kOutcome])
        {
            case kFails: return false;
            case kSucceeds: return true;
            case kStatusModified: throw ExecutionStatus(3, "told to");
            case kStatusFailed: throw ExecutionStatus(5, "told to");
            case kStatusOther: throw ExecutionStatus(9, "told to");
            case kOutOfMemory: throw Tolmen::Cache::OutOfMemory();
            default: throw std::runtime_error("told to");
        }
    }

private:
    static bool runFunction(VObject* object, VRequest& /*request*/, double /*precision*/)
    {
        const auto* const self = dynamic_cast<ScriptedObject*>(object);
        return self->note("function") && self->does(kFunction);
    }

    const Object& model() const { return game_.model_.objects[at(number_)]; }
    bool does(int aspect) const { return model().behaviour[aspect] != 0; }
    bool note(const std::string& what, const std::string& detail = "") const
    {
        game_.events_.push_back(what + " " + getName() + detail);
        return true;
    }

    Game& game_;
    const int number_;
};

/// Does what its game says when its parameter is set.
class Follower final : public Quorl::VInputBase
{
public:
    Follower(const RefPtr<VParameter>& followed, Game& game, int number)
        : VInputBase(followed), game_(game), number_(number)
    {
    }
    void valueChanged(const RefPtr<Quorl::VValueBase>&, const Quorl::WeakPtr<Quorl::ValuePool>&,
                      const Quorl::ValueNotifierList*, const Quorl::ValueMap*) override
    {
        const std::vector<Move> moves = game_.model_.parameters[at(number_)].observer;
        for (const Move& move : moves) game_.perform(move, nullptr);
    }
    bool SyncFromContextValue(const RefPtr<Quorl::ValuePool>&, const std::string&) override
    {
        return false;
    }

private:
    Game& game_;
    const int number_;
};

Game::Game(int objects, int verbosity) : verbosity_(verbosity)
{
    model_.verbosity = verbosity;
    pools_.emplace_back();
    for (int number = 1; number <= kPools; ++number)
        pools_.emplace_back(new Quorl::ValuePool("game " + std::to_string(number)));
    for (int number = 0; number < objects; ++number) newObject();
}

Game::~Game()
{
    for (const auto& object : objects_) object->VManagedObject::remove();
}

void Game::newObject()
{
    if (objects_.size() >= kMostObjects) return;
    const int number = static_cast<int>(objects_.size());
    const RefPtr<ScriptedObject> object(
        new ScriptedObject("o" + std::to_string(number), *this, number));
    objects_.push_back(object);
    numbers_[object->ID] = number;
    validators_.emplace_back(new Quorl::VConnectionValidator);
    object->insertConnectionValidator(validators_.back());
    model_.objects.emplace_back();
    model_.objects.back().name = object->getName();
    model_.objects.back().ages[kNoPool] = object->age({}).stamp();
    model_.objects.back().validatorAge = validators_.back()->stamp();
    newOutput(number, number % 2 == 1);
    newInput(number, 0, 0);
    newInput(number, 1, 0);
}

int Game::newParameter(const RefPtr<VParameter>& parameter, int source, bool isLocal)
{
    const int number = static_cast<int>(parameters_.size());
    parameters_.push_back(parameter);
    Parameter model;
    model.name = parameter->name;
    model.source = source;
    model.isLocal = isLocal;
    model.age = parameter->defaultValue->age().stamp();
    model_.parameters.push_back(model);
    if (isLocal) parameter->Localize();
    const RefPtr<Follower> follower(new Follower(parameter, *this, number));
    follower->activateNotification();
    followers_.push_back(follower);
    return number;
}

void Game::newOutput(int number, bool isLocal)
{
    Object& model = model_.objects[at(number)];
    if (model.outputs >= 2) return;
    const std::string name = "out" + std::to_string(model.outputs++);
    const RefPtr<VParameter> parameter(new Quorl::VValueParameter<double>(
        RefPtr<Quorl::VValue<double>>(new Quorl::VValue<double>(0.0)), name));
    objects_[at(number)]->registerOutput(parameter, name);
    newParameter(parameter, number, isLocal);
    model.connection = objects_[at(number)]->ConnectionAge().stamp();
    model_.clock = Ageable::GlobalTime.stamp();
}

void Game::newInput(int number, int level, int kind)
{
    Object& model = model_.objects[at(number)];
    if (model.slots.size() >= kMostInputs) return;
    const bool isPassedOver = kind == 1;
    const std::string name =
        (isPassedOver ? "qZelm::in" : "in") + std::to_string(model.slots.size());
    const RefPtr<VParameter> parameter(new Quorl::VValueParameter<double>(
        RefPtr<Quorl::VValue<double>>(new Quorl::VValue<double>(0.0)), name));
    const RefPtr<VSlot> slot = objects_[at(number)]->addParameter(name, level, parameter, false);
    slot->InputClass = kind > 2 ? kind - 2 : 0;
    const bool isLocal = kind == 2;
    const int shown = newParameter(parameter, -1, isLocal);
    slots_.push_back(slot);
    model_.slots.push_back({name, number, level, shown, slot->InputClass});
    model.slots.push_back(static_cast<int>(slots_.size()) - 1);
    std::ranges::sort(model.slots, {}, [&](int index) {
        const Slot& entry = model_.slots[at(index)];
        return std::pair(entry.level, entry.name);
    });
    model.connection = objects_[at(number)]->ConnectionAge().stamp();
    model.taint = numberOf(validators_[at(number)]->Taint) + 1;
    model_.clock = Ageable::GlobalTime.stamp();
}

} // namespace QuorlTest::Evaluation
