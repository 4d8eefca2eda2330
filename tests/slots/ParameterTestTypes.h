#pragma once

#include <quorl/slots/VParameter.h>
#include <quorl/slots/VValueParameter.h>
#include <tests/support/Node.h>

#include <string>

/// What the tests of parameters share.
namespace QuorlTest
{

inline bool setText(const Quorl::RefPtr<Quorl::VParameter>& parameter, const std::string& text,
                    const Quorl::RefPtr<Quorl::ValuePool>& pool = {}, bool create = true)
{
    return parameter->setValueFromText(text, pool, "", create,
                                       Quorl::WeakPtr<Quorl::ValueNotifier>(), nullptr, nullptr);
}

inline std::string textOf(const Quorl::RefPtr<Quorl::VValueBase>& value)
{
    return value ? value->Text() : "none";
}

inline Quorl::RefPtr<Quorl::VParameter> makeLocal(double datum)
{
    const Quorl::RefPtr<Quorl::VParameter> parameter = makeParameter("p", datum);
    parameter->Localize();
    return parameter;
}

/// A value with a part that belongs to it.
class Whole final : public Quorl::VValue<double>
{
public:
    class Part final : public Quorl::VValue<int>
    {
    public:
        using VValue<int>::VValue;
        bool setContainerValue(const Quorl::WeakPtr<Quorl::VValueBase>&) override { return true; }
        Quorl::RefPtr<Quorl::VValueBase> copy() const override
        {
            return Quorl::RefPtr<Quorl::VValueBase>(new Part(*this));
        }
    };

    explicit Whole(double datum) : VValue<double>(datum)
    {
        components.setValue("part", Quorl::RefPtr<Quorl::VValueBase>(new Part(7)));
    }
    Quorl::RefPtr<Quorl::VValueBase> copy() const override
    {
        double datum = 0;
        getValue(datum);
        return Quorl::RefPtr<Quorl::VValueBase>(new Whole(datum));
    }
};

inline Quorl::RefPtr<Quorl::VParameter> makeWhole()
{
    return Quorl::RefPtr<Quorl::VParameter>(
        new DoubleParameter(Quorl::RefPtr<Quorl::VValue<double>>(new Whole(1.0)), "whole"));
}

} // namespace QuorlTest
