#include "Foresight.h"

#include <quorl/objects/VStateCreatorBase.h>
#include <quorl/slots/VParameter.h>
#include <quorl/values/VValueBase.h>
#include <tests/support/Node.h>
#include <zelm/why/Explanation.h>
#include <zelm/why/Predictor.h>
#include <zelm/why/Recorder.h>

#include <algorithm>

namespace Zelm
{

using Quorl::ValuePool;
using Quorl::VObject;
using Quorl::VParameter;
using Quorl::VRequest;
using Quorl::VSlot;

namespace
{

constexpr int kClass = 7; // of inputs, which some objects recognise

RefPtr<VParameter> parameterOf(const std::string& name, bool isLocal)
{
    RefPtr<VParameter> parameter = QuorlTest::makeParameter(name);
    if (isLocal) parameter->Localize();
    return parameter;
}

void renew(const VParameter& parameter, const RefPtr<ValuePool>& context)
{
    parameter.getValue(context, ""); // which makes the variable
    parameter.touchValue(context);
}

} // namespace

Actor::Actor(const std::string& actorName, std::vector<std::string>& log)
    : VObject(actorName, 0, {}), log_(log)
{
    enableRequestProcessing();
}

bool Actor::update(VRequest& request, double /*precision*/)
{
    log_.push_back(getName());
    for (const RefPtr<VParameter>& output : outputs) renew(*output, request.Pool);
    if (keepsState) myState(request.Pool)->touch();
    return true;
}

RefPtr<VSlot> Actor::addInput(const std::string& slotName, bool isLocal)
{
    own.push_back(parameterOf(slotName, isLocal));
    own.back()->setCreator(this);
    inputs.push_back(addParameter(slotName, 0, own.back(), false));
    return inputs.back();
}

void Actor::addOutput(const std::string& slotName, bool isLocal)
{
    outputs.push_back(parameterOf(slotName, isLocal));
    registerOutput(outputs.back(), slotName);
}

RandomNetwork::RandomNetwork(std::uint64_t seed) : random_(seed)
{
    for (int count = 0; count < 2; ++count) contexts_.push_back(QuorlTest::makePool());
    const std::size_t size = 2 + below(6);
    for (std::size_t at = 0; at < size; ++at)
    {
        const RefPtr<Actor> actor(new Actor("actor" + std::to_string(at), log_));
        for (std::size_t count = below(3); count < 3; ++count)
        {
            const std::string name = (isOneIn(8) ? "qZelm::" : "in") + std::to_string(count);
            const RefPtr<VSlot> slot = actor->addInput(name, isOneIn(2));
            if (isOneIn(8)) slot->InputClass = kClass;
        }
        for (std::size_t count = below(2); count < 2; ++count)
            actor->addOutput("out" + std::to_string(count), !isOneIn(4));
        if (isOneIn(2)) actor->classes.insert(kClass);
        actor->keepsState = isOneIn(4);
        actor->isDemanding = isOneIn(12);
        actors_.push_back(actor);
    }
    for (std::size_t count = 0; count < 2 * size; ++count) connect(anyActor());
}

RandomNetwork::~RandomNetwork()
{
    for (const RefPtr<Actor>& actor : actors_) actor->Quorl::VManagedObject::remove();
}

std::size_t RandomNetwork::below(std::size_t bound)
{
    return static_cast<std::size_t>(random_() % bound);
}

Actor& RandomNetwork::anyActor()
{
    return *actors_[below(actors_.size())];
}

/// Plugs an output in, most often of an object that is made earlier; or an input that becomes
/// shared; or what belongs there.
void RandomNetwork::connect(Actor& actor)
{
    const std::size_t at = below(actor.inputs.size());
    Actor& other = anyActor();
    if (isOneIn(6))
        actor.inputs[at]->attachSource(actor.own[at]);
    else if (isOneIn(6))
        actor.inputs[at]->attachSource(other.own[below(other.own.size())]);
    else if (other.getName() < actor.getName() || isOneIn(4))
        actor.inputs[at]->attachSource(other.outputs[below(other.outputs.size())]);
}

void RandomNetwork::touch(Actor& actor)
{
    renew(*actor.own[below(actor.own.size())], contexts_[below(2)]);
}

void RandomNetwork::touchState(const Actor& actor)
{
    if (const auto state = actor.stateIn(contexts_[below(2)])) state->touch();
}

void RandomNetwork::occupy(Actor& actor)
{
    others_.push_back(std::make_unique<VRequest>(contexts_.front(), false));
    if (isOneIn(2))
        actor.addRequest(*others_.back());
    else
        for (const RefPtr<Actor>& each : actors_) each->removeRequest(*others_.back());
}

void RandomNetwork::request(Actor& actor)
{
    VRequest plain(contexts_[below(2)], false);
    actor.init_request(plain, 1.0);
}

void RandomNetwork::change()
{
    Actor& actor = anyActor();
    switch (below(14))
    {
        case 0:
        case 1: connect(actor); break;
        case 2: touchState(actor); break;
        case 3: occupy(actor); break;
        case 4:
            if (actor.RequestProcessing)
                actor.disableRequestProcessing();
            else
                actor.enableRequestProcessing();
            break;
        case 5: actor.enableRequestProcessing(); break;
        case 6: actor.isDemanding = isOneIn(3); break;
        case 7: request(actor); break;
        default: touch(actor); break;
    }
}

std::string RandomNetwork::difference()
{
    for (std::size_t count = below(4); count > 0; --count) change();
    const RefPtr<VObject> root(&anyActor());
    const RefPtr<ValuePool> context = contexts_[below(2)];
    const bool isCancelled = isOneIn(30);
    const Account before = foreseen(root, context, 1.0, isCancelled);
    log_.clear();
    const Account after = Recorder(context, [&] { return isCancelled; }).evaluate(root, 1.0);

    std::string text;
    for (const RefPtr<Actor>& actor : actors_)
    {
        const Explanation told = explained(before, root, actor);
        const Explanation seen = explained(after, root, actor);
        if (told.json() != seen.json())
            text += "foreseen " + told.json().dump() + "\nrecorded " + seen.json().dump() + "\n";
        if (seen.hadToRun() != (std::ranges::find(log_, actor->getName()) != log_.end()))
            text += actor->getName() + " is not as it was recorded: " + seen.verdict() + "\n";
    }
    return text;
}

} // namespace Zelm
