#pragma once

#include "Evaluation.h"

#include <zelm/network/Json.h>
#include <zelm/network/LoadedNetwork.h>

#include <string>
#include <vector>

namespace Zelm
{

/// A network as people draw it.
struct Drawing
{
    enum class State
    {
        Fresh,
        Stale, ///< a request would run it
        NeverRun,
        Failed,
        NotReady, ///< requests pass over it
    };

    struct Node
    {
        std::string name;
        std::string creator;
        std::vector<std::string> inputs; ///< those that take part in an edge
        std::vector<std::string> outputs;
        std::vector<State> states; ///< for each context
    };

    struct Edge
    {
        std::size_t from; ///< places of nodes
        std::size_t to;
        std::string output; ///< the slot where it begins: an output, or a shared input
        std::string input;
        bool isShared;               ///< it begins at an input
        std::vector<long long> ages; ///< of the value, for each context
    };

    static const char* wordOf(State state);

    Json json() const;

    std::vector<std::string> contexts;
    std::vector<Node> nodes; ///< in the order in which the objects were made
    std::vector<Edge> edges;
};

/// Draws a network as it is, with what has failed in the evaluations that were made of it.
Drawing drawingOf(const LoadedNetwork& network, const std::vector<Outcome>& outcomes);

} // namespace Zelm
