#include <benchmarks/StoredPlan.h>

#include <algorithm>

namespace QuorlBenchmark
{
namespace
{

constexpr std::int64_t kOlderThanAll = -1;

} // namespace

StoredPlan::StoredPlan(const Topology& shape) : values_(shape.objects(), Value{0, 0})
{
    for (const std::vector<std::size_t>& sources : shape.inputs)
    {
        for (const std::size_t source : sources)
            inputs_.push_back(static_cast<std::uint32_t>(source));
        if (sources.empty())
        {
            inputs_.push_back(static_cast<std::uint32_t>(values_.size()));
            values_.push_back({0, 0});
        }
        steps_.push_back({kOlderThanAll, 0, inputs_.size()});
    }
}

bool StoredPlan::request()
{
    const std::int64_t before = updates_;
    std::size_t input = 0;
    for (std::size_t number = 0; number < steps_.size(); ++number)
    {
        Step& step = steps_[number];
        const std::size_t firstInput = input;
        std::int64_t newest = step.connection;
        for (; input < step.inputsEnd; ++input)
            newest = std::max(newest, values_[inputs_[input]].age);
        if (newest <= step.age) continue;
        run(number, firstInput);
        step.age = values_[number].age = newest;
    }
    return updates_ != before;
}

void StoredPlan::setLeaf(double datum)
{
    values_[inputs_.front()] = {++clock_, datum};
}

double StoredPlan::result()
{
    request();
    return values_[steps_.size() - 1].datum;
}

void StoredPlan::run(std::size_t step, std::size_t firstInput)
{
    ++updates_;
    double sum = 1;
    for (std::size_t input = firstInput; input < steps_[step].inputsEnd; ++input)
        sum += values_[inputs_[input]].datum;
    values_[step].datum = sum;
}

} // namespace QuorlBenchmark
