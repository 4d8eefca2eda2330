#pragma once

#include "GeoidError.h"
#include "network/Journal.h"

#include <quorl/objects/VObject.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VValueParameter.h>

#include <string>

namespace Geoid
{

/// Where a parameter has its values: one for all contexts, or one in each.
enum class Scope
{
    Everywhere,
    PerContext,
};

/// A step of the pipeline: an object of the network that computes its outputs from its inputs, and
/// notes in the journal that it did.
///
/// What a step cannot do is thrown as GeoidError, through all requests that wait for it.
class Step : public Quorl::VObject
{
public:
    Step(const std::string& name, Journal& journal);

    bool update(Quorl::VRequest& request, double precision) final;

protected:
    virtual void compute(const Quorl::VRequest& request) = 0;

private:
    Journal& journal_;
};

/// An input of a step: a slot with a parameter of its own, in whose place another's can be plugged.
template <class T>
class Input
{
public:
    Input(Step& step, const std::string& name, Scope scope, const T& initial = T())
    {
        using Quorl::VValue;
        const Quorl::RefPtr<VValue<T>> value(new VValue<T>(initial));
        const Quorl::RefPtr<Quorl::VParameter> parameter(
            new Quorl::VValueParameter<T>(value, name));
        parameter->setCreator(&step);
        if (scope == Scope::PerContext) parameter->Localize();
        slot_ = step.addParameter(name, 0, parameter, false);
    }

    /// What stands here in the context of the request.
    T operator()(const Quorl::VRequest& request) const
    {
        const Quorl::RefPtr<Quorl::VTypedValueBase<T>> value = slot_->getValueBase(request.Pool);
        T datum{};
        if (!value || !value->getValue(datum))
            throw GeoidError("the input " + slot_->Name + " has no value");
        return datum;
    }

private:
    Quorl::RefPtr<Quorl::VSlot> slot_;
};

/// An output of a step, with a value in each context.
template <class T>
class Output
{
public:
    Output(Step& step, const std::string& name)
        : parameter_(new Quorl::VValueParameter<T>(
              Quorl::RefPtr<Quorl::VValue<T>>(new Quorl::VValue<T>), name))
    {
        parameter_->setCreator(&step);
        parameter_->Localize();
        step.registerOutput(parameter_, name);
    }

    /// Gives the output its value in the context of the request, and tells whoever follows it.
    void set(const Quorl::VRequest& request, const T& datum) const
    {
        const Quorl::RefPtr<Quorl::VTypedValueBase<T>> value =
            parameter_->getLocalValue(request.Pool, "", true);
        value->setValue(datum);
        parameter_->notifyValueChange(value, request.Pool, "", {}, nullptr, nullptr);
    }

private:
    Quorl::RefPtr<Quorl::VParameter> parameter_;
};

} // namespace Geoid
