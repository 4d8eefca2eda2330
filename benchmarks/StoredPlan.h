#pragma once

#include <benchmarks/Topology.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace QuorlBenchmark
{

/// The bare limit of an evaluation whose order is known beforehand: ages compared along a flat
/// array, without any walk.
class StoredPlan
{
public:
    explicit StoredPlan(const Topology& shape);

    /// Goes through all objects. \return whether anything was done.
    bool request();

    /// Of the input of the first object, which nobody provides.
    void setLeaf(double datum);

    /// Goes through all objects, and tells what the last one has computed.
    double result();

    std::int64_t updates() const { return updates_; } ///< of all objects together

private:
    struct Value
    {
        std::int64_t age;
        double datum;
    };
    struct Step
    {
        std::int64_t age;
        std::int64_t connection;
        std::size_t inputsEnd; // in `inputs_`; they begin where those of the step before end
    };

    void run(std::size_t step, std::size_t firstInput);

    std::vector<Step> steps_;
    std::vector<std::uint32_t> inputs_; // places in `values_`
    std::vector<Value> values_;         // outputs by their objects, then inputs nobody provides
    std::int64_t clock_ = 0;
    std::int64_t updates_ = 0;
};

} // namespace QuorlBenchmark
