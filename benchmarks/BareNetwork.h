#pragma once

#include <benchmarks/Topology.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

namespace QuorlBenchmark
{

/// Where the outputs of a bare network lie, and how a walk gets to them.
enum class Parameters
{
    embedded,      ///< in their objects, so that a walk only compares
    onHeap,        ///< each by itself, as parameters are that objects share
    throughHandles ///< the same, and the walk holds what it looks at by an atomic count
};

/// The bare limit of an evaluation: plain structs, where nothing is done but to compare ages, and
/// to run what is older than what feeds it. Each object is entered once in an evaluation. No
/// context, no locks, no names.
template <Parameters kind>
class BareNetwork
{
public:
    explicit BareNetwork(const Topology& shape);

    /// Asks the last object. \return whether anything was done.
    bool request();

    /// Of the input of the first object, which nobody provides.
    void setLeaf(double datum);

    /// Asks the last object, and tells what it has computed.
    double result();

    std::int64_t updates() const { return updates_; } ///< of all objects together

private:
    struct Object;
    struct Parameter
    {
        Object* source = nullptr; // null if nobody provides it
        std::int64_t age = 0;
        double datum = 0;
        std::atomic<int> handles = 1;
    };
    using Output =
        std::conditional_t<kind == Parameters::embedded, Parameter, std::unique_ptr<Parameter>>;
    struct Object
    {
        std::int64_t age = -1; // older than all
        std::int64_t connection = 0;
        std::int64_t evaluation = 0; // in which it was entered last
        Output output{};
        std::vector<Parameter*> inputs;
        std::atomic<int> handles = 1;
    };
    class Hold;

    static Parameter& outputOf(Object& object);
    void ask(Object& object);
    std::int64_t askInputs(const Object& object);
    void run(Object& object);

    std::vector<Object> objects_;
    std::vector<std::unique_ptr<Parameter>> ownInputs_; // of those objects that have no other
    std::int64_t clock_ = 0;
    std::int64_t evaluation_ = 0;
    std::int64_t updates_ = 0;
};

extern template class BareNetwork<Parameters::embedded>;
extern template class BareNetwork<Parameters::onHeap>;
extern template class BareNetwork<Parameters::throughHandles>;

} // namespace QuorlBenchmark
