#pragma once

#include <benchmarks/Topology.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace QuorlBenchmark
{

/// The bare limit of a walk: the same paths over plain structs, where nothing is done but to
/// compare ages. No context, no locks, no handles, no names.
class BareNetwork
{
public:
    explicit BareNetwork(const Topology& shape);

    /// Asks the last object. \return whether anything is to be done.
    bool request() const { return isStale(objects_.back()); }

    void touch(std::size_t object) { objects_[object].value = ++clock_; }

private:
    struct Object
    {
        std::int64_t age = 0;
        std::int64_t connection = 0;
        std::int64_t ownInput = 0; // of an input that nobody provides
        std::int64_t value = 0;    // of its output
        std::vector<const Object*> inputs;
    };

    static bool isStale(const Object& object);

    std::vector<Object> objects_;
    std::int64_t clock_;
};

} // namespace QuorlBenchmark
