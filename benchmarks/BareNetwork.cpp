#include <benchmarks/BareNetwork.h>

#include <algorithm>

namespace QuorlBenchmark
{

/// A share of something, if the network counts them.
template <Parameters kind>
class BareNetwork<kind>::Hold
{
public:
    explicit Hold(std::atomic<int>& count) : count_(count)
    {
        if constexpr (kind == Parameters::throughHandles)
            count_.fetch_add(1, std::memory_order_relaxed);
    }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold()
    {
        if constexpr (kind == Parameters::throughHandles)
            count_.fetch_sub(1, std::memory_order_acq_rel);
    }

private:
    std::atomic<int>& count_;
};

template <Parameters kind>
BareNetwork<kind>::BareNetwork(const Topology& shape) : objects_(shape.objects())
{
    for (std::size_t number = 0; number < shape.objects(); ++number)
    {
        Object& object = objects_[number];
        if constexpr (kind != Parameters::embedded) object.output = std::make_unique<Parameter>();
        outputOf(object).source = &object;
        for (const std::size_t source : shape.inputs[number])
            object.inputs.push_back(&outputOf(objects_[source]));
        if (!object.inputs.empty()) continue;
        ownInputs_.push_back(std::make_unique<Parameter>());
        object.inputs.push_back(ownInputs_.back().get());
    }
}

template <Parameters kind>
bool BareNetwork<kind>::request()
{
    const std::int64_t before = updates_;
    ++evaluation_;
    ask(objects_.back());
    return updates_ != before;
}

template <Parameters kind>
void BareNetwork<kind>::setLeaf(double datum)
{
    Parameter& input = *objects_.front().inputs.front();
    input.datum = datum;
    input.age = ++clock_;
}

template <Parameters kind>
double BareNetwork<kind>::result()
{
    request();
    return outputOf(objects_.back()).datum;
}

template <Parameters kind>
typename BareNetwork<kind>::Parameter& BareNetwork<kind>::outputOf(Object& object)
{
    if constexpr (kind == Parameters::embedded)
        return object.output;
    else
        return *object.output;
}

template <Parameters kind>
void BareNetwork<kind>::ask(Object& object)
{
    if (object.evaluation == evaluation_) return;
    object.evaluation = evaluation_;
    const std::int64_t newest = std::max(object.connection, askInputs(object));
    if (newest <= object.age) return;
    run(object);
    object.age = outputOf(object).age = newest;
}

/// \return the age of the youngest of what feeds the object.
template <Parameters kind>
std::int64_t BareNetwork<kind>::askInputs(const Object& object)
{
    std::int64_t newest = 0;
    for (Parameter* const input : object.inputs)
    {
        const Hold parameter(input->handles);
        if (Object* const source = input->source)
        {
            const Hold provider(source->handles);
            ask(*source);
            newest = std::max(newest, source->age);
        }
        newest = std::max(newest, input->age);
    }
    return newest;
}

template <Parameters kind>
void BareNetwork<kind>::run(Object& object)
{
    ++updates_;
    double sum = 1;
    for (const Parameter* const input : object.inputs) sum += input->datum;
    outputOf(object).datum = sum;
}

template class BareNetwork<Parameters::embedded>;
template class BareNetwork<Parameters::onHeap>;
template class BareNetwork<Parameters::throughHandles>;

} // namespace QuorlBenchmark
