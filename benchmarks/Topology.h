#pragma once

#include <cstddef>
#include <vector>

namespace QuorlBenchmark
{

/// The shape of a network: for each object the numbers of the objects behind its inputs, which are
/// all smaller than its own. The last object is the one that is asked. An object without any has
/// one input that nobody provides.
struct Topology
{
    std::vector<std::vector<std::size_t>> inputs;

    std::size_t objects() const { return inputs.size(); }

    std::size_t edges() const;

    /// How many objects a change of the first one concerns, itself included.
    std::size_t dependents() const;

    static Topology loose(std::size_t count); ///< without connections
    static Topology chain(std::size_t length);
    static Topology fanIn(std::size_t width); ///< so many objects, and a sink
    static Topology binaryTree(std::size_t objects);
    static Topology chains(std::size_t count, std::size_t length); ///< side by side, and a sink

    /// Layers of objects, each of which takes three of the layer before, and a sink over the last
    /// layer. Each layer has three times as many paths to it as the one behind.
    static Topology layers(std::size_t count, std::size_t width);
};

} // namespace QuorlBenchmark
