#include <benchmarks/ObjectNetwork.h>

#include <quorl/objects/VRequest.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VValueParameter.h>
#include <quorl/values/VValue.h>

namespace QuorlBenchmark
{
namespace
{

Quorl::RefPtr<Quorl::VParameter> makeParameter(const std::string& name)
{
    const Quorl::RefPtr<Quorl::VValue<double>> value(new Quorl::VValue<double>(0.0));
    return Quorl::RefPtr<Quorl::VParameter>(new Quorl::VValueParameter<double>(value, name));
}

} // namespace

CountingObject::CountingObject(const std::string& givenName)
    : VObject(givenName, 0, {}), output(makeParameter("out"))
{
    enableRequestProcessing();
}

bool CountingObject::update(Quorl::VRequest& /*request*/, double /*precision*/)
{
    ++updates;
    return true;
}

void CountingObject::addInput(const Quorl::RefPtr<Quorl::VParameter>& provided)
{
    const std::string inputName = "in" + std::to_string(getNumberOfInputs());
    const Quorl::RefPtr<Quorl::VSlot> slot =
        addParameter(inputName, 0, makeParameter(inputName), false);
    if (provided) slot->attachSource(provided);
}

ObjectNetwork::ObjectNetwork(const Topology& shape) : pool_(new Quorl::ValuePool)
{
    objects_.reserve(shape.objects());
    for (const auto& inputs : shape.inputs)
    {
        const std::string name = "object " + std::to_string(objects_.size());
        const Quorl::RefPtr<CountingObject> object(new CountingObject(name));
        object->registerOutput(object->output, "out");
        if (inputs.empty()) object->addInput({});
        for (const std::size_t source : inputs) object->addInput(objects_[source]->output);
        objects_.push_back(object);
    }
}

ObjectNetwork::~ObjectNetwork()
{
    for (const auto& object : objects_) object->Quorl::VManagedObject::remove();
}

bool ObjectNetwork::request()
{
    Quorl::VRequest request(pool_, false);
    return objects_.back()->init_request(request, 1.0);
}

std::int64_t ObjectNetwork::requestAndCountVisits()
{
    Quorl::VRequest request(pool_, false);
    objects_.back()->init_request(request, 1.0);
    std::int64_t visits = 1; // where it started, which the ticket does not record
    for (const auto& [object, level] : request.Id->levels()) visits += level.Count;
    return visits;
}

std::int64_t ObjectNetwork::updates() const
{
    std::int64_t sum = 0;
    for (const auto& object : objects_) sum += object->updates;
    return sum;
}

} // namespace QuorlBenchmark
