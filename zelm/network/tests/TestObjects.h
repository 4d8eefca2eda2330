#pragma once

#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>
#include <quorl/kit/ValueTraits.h>

#include <string>

namespace Zelm
{

using Quorl::InputSlot;
using Quorl::OutputSlot;
using Quorl::perContext;

/// A type with a text form of its own: three numbers.
struct Colour
{
    int red = 0;
    int green = 0;
    int blue = 0;

    bool operator!=(const Colour& other) const
    {
        return red != other.red || green != other.green || blue != other.blue;
    }
};

/// A type without one.
struct Opaque
{
    bool operator!=(const Opaque& /*other*/) const { return false; }
};

} // namespace Zelm

template <>
struct Quorl::VValueTrait<Zelm::Colour>
{
    static bool setValueFromText(Zelm::Colour& datum, const std::string& text)
    {
        return std::sscanf(text.c_str(), "%d %d %d", &datum.red, &datum.green, &datum.blue) == 3;
    }
    static std::string Text(const Zelm::Colour& datum)
    {
        return std::to_string(datum.red) + " " + std::to_string(datum.green) + " " +
               std::to_string(datum.blue);
    }
};

template <>
struct Quorl::VValueTrait<Zelm::Opaque>
{
    static bool setValueFromText(Zelm::Opaque& /*datum*/, const std::string& /*text*/)
    {
        return false;
    }
    static std::string Text(const Zelm::Opaque& /*datum*/) { return {}; }
};

namespace Zelm
{

/// Has an input of each kind of type, for all contexts.
class Inputs final : public Quorl::VObject
{
public:
    using VObject::VObject;

private:
    const InputSlot<double> real_{*this, "double", 0.5};
    const InputSlot<float> single_{*this, "float"};
    const InputSlot<short> small_{*this, "short"};
    const InputSlot<int> whole_{*this, "int", 7};
    const InputSlot<unsigned int> natural_{*this, "unsigned"};
    const InputSlot<long> long_{*this, "long"};
    const InputSlot<long long> longest_{*this, "long long"};
    const InputSlot<bool> truth_{*this, "bool"};
    const InputSlot<char> character_{*this, "char", 'c'};
    const InputSlot<std::string> text_{*this, "text"};
    const InputSlot<Colour> colour_{*this, "colour"};
    const InputSlot<Opaque> opaque_{*this, "opaque"};
};

/// Adds two numbers.
class Sum final : public Quorl::VObject
{
public:
    using VObject::VObject;

    bool update(Quorl::VRequest& request, double /*precision*/) override
    {
        sum_.set(request, left_(request) + right_(request));
        return true;
    }

private:
    const InputSlot<double> left_{*this, "left", 1.0, perContext()};
    const InputSlot<double> right_{*this, "right", 2.0, perContext()};
    const InputSlot<double> scale_{*this, "scale", 3.0};
    const InputSlot<std::string> note_{*this, "note", {}, perContext()};
    const OutputSlot<double> sum_{*this, "sum"};
};

inline Quorl::VCreator<Inputs> inputsCreator("Test/Inputs");
inline Quorl::VCreator<Sum> sumCreator("Test/Sum",
                                       {.accepts = {typeid(double)}, .provides = {typeid(double)}});

} // namespace Zelm
