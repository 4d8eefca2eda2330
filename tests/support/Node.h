#pragma once

#include <quorl/objects/VObject.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VValueParameter.h>
#include <quorl/values/ValuePool.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace QuorlTest
{

using DoubleParameter = Quorl::VValueParameter<double>;

inline Quorl::RefPtr<DoubleParameter> makeParameter(const std::string& name, double datum = 0.0)
{
    return Quorl::RefPtr<DoubleParameter>(new DoubleParameter(
        Quorl::RefPtr<Quorl::VValue<double>>(new Quorl::VValue<double>(datum)), name));
}

/// A parameter without a default value: its type is void.
class EmptyParameter final : public Quorl::VParameter
{
public:
    using VParameter::VParameter;
    Quorl::RefPtr<Quorl::VParameter> copy() const override { return {}; }
    Quorl::RefPtr<Quorl::VValueBase>
    createLocalVariable(const Quorl::RefPtr<Quorl::ValuePool>&) const override
    {
        return {};
    }
    bool setGlobalValue(const Quorl::RefPtr<Quorl::VValueBase>&, const std::string&) const override
    {
        return false;
    }
    Quorl::RefPtr<Quorl::VValueBase> newValue() const override { return {}; }
};

inline Quorl::RefPtr<Quorl::ValuePool> makePool()
{
    return Quorl::RefPtr<Quorl::ValuePool>(new Quorl::ValuePool);
}

/// An object that notes its updates and does in them what a test tells it.
class Node : public Quorl::VObject
{
public:
    explicit Node(const std::string& nodeName, std::vector<std::string>* commonLog = nullptr)
        : VObject(nodeName, 0, {}), log(commonLog)
    {
        enableRequestProcessing();
    }

    bool update(Quorl::VRequest& request, double precision) override
    {
        ++updates;
        lastPrecision = precision;
        if (log) log->push_back(getName());
        return whenUpdated ? whenUpdated(request) : true;
    }

    /// An input with a parameter of its own.
    Quorl::RefPtr<Quorl::VSlot> input(const std::string& slotName, int level = 0)
    {
        return addParameter(slotName, level, makeParameter(slotName), false);
    }

    /// An output with a parameter of its own.
    Quorl::RefPtr<Quorl::VParameter> output(const std::string& slotName)
    {
        const Quorl::RefPtr<Quorl::VParameter> parameter = makeParameter(slotName);
        registerOutput(parameter, slotName);
        return parameter;
    }

    int updates = 0;
    double lastPrecision = 0;
    std::function<bool(Quorl::VRequest&)> whenUpdated;
    std::vector<std::string>* log;
};

/// Objects of one test. They leave the registry at its end.
class Network
{
public:
    Network() = default;
    Network(const Network&) = delete;
    Network& operator=(const Network&) = delete;
    ~Network()
    {
        for (const auto& node : nodes_) node->Quorl::VManagedObject::remove();
    }

    Quorl::RefPtr<Node> node(const std::string& name)
    {
        nodes_.push_back(Quorl::RefPtr<Node>(new Node(name, &log)));
        return nodes_.back();
    }

    /// Takes an object of a class of its own over.
    template <class Object>
    Quorl::RefPtr<Object> adopt(Object* object)
    {
        object->log = &log;
        nodes_.push_back(Quorl::RefPtr<Node>(object));
        return Quorl::RefPtr<Object>(object);
    }

    /// Plugs a new output of `from` into a new input of `to`.
    Quorl::RefPtr<Quorl::VSlot> connect(const Quorl::RefPtr<Node>& from,
                                        const Quorl::RefPtr<Node>& to, const std::string& name,
                                        int level = 0)
    {
        const Quorl::RefPtr<Quorl::VSlot> slot = to->input(name, level);
        slot->attachSource(from->output(name));
        return slot;
    }

    /// Gives what was updated since the last call.
    std::vector<std::string> takeLog() { return std::exchange(log, {}); }

    std::vector<std::string> log;

private:
    std::vector<Quorl::RefPtr<Node>> nodes_;
};

/// Starts an evaluation of its own at an object.
inline bool ask(const Quorl::RefPtr<Node>& node, const Quorl::RefPtr<Quorl::ValuePool>& pool = {},
                double precision = 1.0)
{
    Quorl::VRequest request(pool, false);
    return node->init_request(request, precision);
}

/// Makes what an input shows younger than all that is.
inline void touchInput(const Quorl::RefPtr<Quorl::VSlot>& slot,
                       const Quorl::RefPtr<Quorl::ValuePool>& pool = {})
{
    slot->Parameter->touchValue(pool);
}

/// Advances the clock by one.
inline Quorl::Ageable tick()
{
    Quorl::Ageable age;
    age.touch();
    return age;
}

/// How far the clock advances in `act`.
template <class Act>
long long ticksOf(Act&& act)
{
    const auto before = Quorl::Ageable::GlobalTime.stamp();
    act();
    return Quorl::Ageable::GlobalTime.stamp() - before;
}

} // namespace QuorlTest
