#pragma once

#include <benchmarks/Topology.h>

#include <quorl/objects/VObject.h>
#include <quorl/slots/VParameter.h>
#include <quorl/values/ValuePool.h>

#include <cstdint>
#include <string>
#include <vector>

namespace QuorlBenchmark
{

/// An object that counts its updates and does nothing else in them.
class CountingObject final : public Quorl::VObject
{
public:
    explicit CountingObject(const std::string& givenName);

    bool update(Quorl::VRequest& request, double precision) override;

    /// An input of its own, and what provides it; null leaves it at a value of its own.
    void addInput(const Quorl::RefPtr<Quorl::VParameter>& provided);

    Quorl::RefPtr<Quorl::VParameter> output;
    std::int64_t updates = 0;
};

/// A network of objects in one pool. They leave the registry at its end.
class ObjectNetwork
{
public:
    explicit ObjectNetwork(const Topology& shape);
    ObjectNetwork(const ObjectNetwork&) = delete;
    ObjectNetwork& operator=(const ObjectNetwork&) = delete;
    ~ObjectNetwork();

    /// Asks the last object. \return whether anything was done.
    bool request();

    /// Asks once more. \return how often that entered an object, for itself or for another.
    std::int64_t requestAndCountVisits();

    const Quorl::RefPtr<CountingObject>& last() const { return objects_.back(); } ///< the one asked

    std::int64_t updates() const; ///< of all objects together

private:
    std::vector<Quorl::RefPtr<CountingObject>> objects_;
    Quorl::RefPtr<Quorl::ValuePool> pool_;
};

} // namespace QuorlBenchmark
