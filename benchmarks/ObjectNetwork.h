#pragma once

#include <benchmarks/Topology.h>

#include <quorl/kit/TypedSlot.h>
#include <quorl/objects/VObject.h>
#include <quorl/values/ValuePool.h>

#include <cstdint>
#include <string>
#include <vector>

namespace QuorlBenchmark
{

/// An object whose output is one more than the sum of its inputs. It counts its updates.
class AddingObject final : public Quorl::VObject
{
public:
    /// \param outputPreferences of the output; with the word "local" it has a value in each
    /// context.
    AddingObject(const std::string& givenName,
                 const Quorl::RefPtr<Quorl::VCreationPreferences>& outputPreferences);

    bool update(Quorl::VRequest& request, double precision) override;

    /// An input of its own, and what provides it; null leaves it at a value of its own.
    void addInput(const Quorl::RefPtr<Quorl::VParameter>& provided);

    std::vector<Quorl::InputSlot<double>> inputs;
    Quorl::OutputSlot<double> output;
    std::int64_t updates = 0;
};

/// A network of objects. They leave the registry at its end.
class ObjectNetwork
{
public:
    /// \param outputPreferences of all outputs; without any they are the same in all contexts.
    explicit ObjectNetwork(
        const Topology& shape,
        const Quorl::RefPtr<Quorl::VCreationPreferences>& outputPreferences = {});
    ObjectNetwork(const ObjectNetwork&) = delete;
    ObjectNetwork& operator=(const ObjectNetwork&) = delete;
    ~ObjectNetwork();

    /// Asks the last object in a context. \return whether anything was done.
    bool request(const Quorl::RefPtr<Quorl::ValuePool>& pool);

    /// The same in the network's own context.
    bool request() { return request(pool_); }

    /// Sets an input that nobody provides, and tells whoever follows it.
    void setInput(std::size_t object, const Quorl::RefPtr<Quorl::ValuePool>& pool, double datum);

    /// From now on the input has a value of its own in each context.
    void localizeInput(std::size_t object);

    /// Of the first object, in the network's own context.
    void setLeaf(double datum) { setInput(0, pool_, datum); }
    void setLeafFromText(const std::string& text);

    /// Asks the last object, and tells what it has computed.
    double result(const Quorl::RefPtr<Quorl::ValuePool>& pool);
    double result() { return result(pool_); }

    const Quorl::RefPtr<AddingObject>& last() const { return objects_.back(); } ///< the one asked

    std::int64_t updates() const; ///< of all objects together

private:
    const Quorl::RefPtr<Quorl::VParameter>& inputOf(std::size_t object) const;

    std::vector<Quorl::RefPtr<AddingObject>> objects_;
    Quorl::RefPtr<Quorl::ValuePool> pool_;
};

} // namespace QuorlBenchmark
