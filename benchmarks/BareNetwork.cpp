#include <benchmarks/BareNetwork.h>

namespace QuorlBenchmark
{

BareNetwork::BareNetwork(const Topology& shape)
    : objects_(shape.objects()), clock_(static_cast<std::int64_t>(shape.objects()))
{
    for (std::size_t number = 0; number < shape.objects(); ++number)
    {
        Object& object = objects_[number];
        object.connection = object.ownInput = object.value = static_cast<std::int64_t>(number);
        object.age = clock_; // it has run
        for (const std::size_t source : shape.inputs[number])
            object.inputs.push_back(&objects_[source]);
    }
}

bool BareNetwork::isStale(const Object& object)
{
    bool result = object.age < object.connection || object.age < object.ownInput;
    for (const Object* const source : object.inputs)
    {
        if (source->value > object.age) result = true;
        if (isStale(*source)) result = true;
        if (source->age > object.age) result = true;
    }
    return result;
}

} // namespace QuorlBenchmark
