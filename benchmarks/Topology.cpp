#include <benchmarks/Topology.h>

#include <algorithm>
#include <numeric>

namespace QuorlBenchmark
{

std::size_t Topology::edges() const
{
    std::size_t sum = 0;
    for (const auto& sources : inputs) sum += sources.size();
    return sum;
}

std::size_t Topology::dependents() const
{
    std::vector<bool> isReached(objects(), false);
    isReached.front() = true;
    for (std::size_t object = 1; object < objects(); ++object)
        isReached[object] = std::ranges::any_of(
            inputs[object], [&](std::size_t source) { return isReached[source]; });
    return static_cast<std::size_t>(std::ranges::count(isReached, true));
}

Topology Topology::loose(std::size_t count)
{
    return {std::vector<std::vector<std::size_t>>(count)};
}

Topology Topology::chain(std::size_t length)
{
    Topology shape{{{}}};
    for (std::size_t object = 1; object < length; ++object) shape.inputs.push_back({object - 1});
    return shape;
}

Topology Topology::fanIn(std::size_t width)
{
    return chains(width, 1);
}

Topology Topology::binaryTree(std::size_t objects)
{
    // A heap, told backwards: its root comes last.
    Topology shape;
    for (std::size_t place = objects; place-- > 0;)
    {
        std::vector<std::size_t> children;
        for (std::size_t child = 2 * place + 1; child <= 2 * place + 2; ++child)
            if (child < objects) children.push_back(objects - 1 - child);
        shape.inputs.push_back(children);
    }
    return shape;
}

Topology Topology::chains(std::size_t count, std::size_t length)
{
    Topology shape;
    std::vector<std::size_t> ends;
    for (std::size_t chain = 0; chain < count; ++chain)
    {
        shape.inputs.emplace_back();
        for (std::size_t place = 1; place < length; ++place)
            shape.inputs.push_back({shape.objects() - 1});
        ends.push_back(shape.objects() - 1);
    }
    shape.inputs.push_back(ends);
    return shape;
}

Topology Topology::layers(std::size_t count, std::size_t width)
{
    Topology shape = loose(width);
    for (std::size_t layer = 1; layer < count; ++layer)
        for (std::size_t place = 0; place < width; ++place)
        {
            const std::size_t before = (layer - 1) * width;
            shape.inputs.push_back(
                {before + place, before + (place + 1) % width, before + (place + 3) % width});
        }
    std::vector<std::size_t> last(width);
    std::iota(last.begin(), last.end(), (count - 1) * width);
    shape.inputs.push_back(last);
    return shape;
}

} // namespace QuorlBenchmark
