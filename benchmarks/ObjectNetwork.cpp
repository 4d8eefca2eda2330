#include <benchmarks/ObjectNetwork.h>

#include <quorl/objects/VRequest.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>

namespace QuorlBenchmark
{

using Quorl::RefPtr;
using Quorl::ValuePool;

AddingObject::AddingObject(const std::string& givenName,
                           const RefPtr<Quorl::VCreationPreferences>& outputPreferences)
    : VObject(givenName, 0, {}), output(*this, "out", 0.0, outputPreferences)
{
    enableRequestProcessing();
}

bool AddingObject::update(Quorl::VRequest& request, double /*precision*/)
{
    ++updates;
    double sum = 1;
    for (const Quorl::InputSlot<double>& input : inputs) sum += input(request);
    output.set(request, sum);
    return true;
}

void AddingObject::addInput(const RefPtr<Quorl::VParameter>& provided)
{
    inputs.emplace_back(*this, "in" + std::to_string(inputs.size()));
    if (provided) inputs.back().slot()->attachSource(provided);
}

ObjectNetwork::ObjectNetwork(const Topology& shape,
                             const RefPtr<Quorl::VCreationPreferences>& outputPreferences)
    : pool_(new ValuePool)
{
    objects_.reserve(shape.objects());
    for (const auto& sources : shape.inputs)
    {
        const std::string name = "object " + std::to_string(objects_.size());
        const RefPtr<AddingObject> object(new AddingObject(name, outputPreferences));
        if (sources.empty()) object->addInput({});
        for (const std::size_t source : sources)
            object->addInput(objects_[source]->output.slot()->Parameter);
        objects_.push_back(object);
    }
}

ObjectNetwork::~ObjectNetwork()
{
    for (const auto& object : objects_) object->Quorl::VManagedObject::remove();
}

bool ObjectNetwork::request(const RefPtr<ValuePool>& pool)
{
    Quorl::VRequest request(pool, false);
    return objects_.back()->init_request(request, 1.0);
}

void ObjectNetwork::setInput(std::size_t object, const RefPtr<ValuePool>& pool, double datum)
{
    objects_[object]->inputs.front().set(pool, datum);
}

void ObjectNetwork::localizeInput(std::size_t object)
{
    inputOf(object)->Localize();
}

void ObjectNetwork::setLeafFromText(const std::string& text)
{
    inputOf(0)->setValueFromText(text, pool_, "", true, {}, nullptr, nullptr);
}

double ObjectNetwork::result(const RefPtr<ValuePool>& pool)
{
    request(pool);
    return objects_.back()->output.read(pool).value_or(0);
}

std::int64_t ObjectNetwork::updates() const
{
    std::int64_t sum = 0;
    for (const auto& object : objects_) sum += object->updates;
    return sum;
}

const RefPtr<Quorl::VParameter>& ObjectNetwork::inputOf(std::size_t object) const
{
    return objects_[object]->inputs.front().slot()->Parameter;
}

} // namespace QuorlBenchmark
