#include "Arithmetic.h"

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace Maps
{
namespace
{

double result(double left, double right, Operation operation)
{
    switch (operation)
    {
        case Operation::Add: return left + right;
        case Operation::Subtract: return left - right;
        default: return left * right;
    }
}

} // namespace

Field combine(const Field& left, const Field& right, Operation operation)
{
    if (left.region != right.region) throw MapError("the two fields are not of the same region");
    if (left.width() != right.width() || left.height() != right.height())
        throw MapError("the two fields are not of the same size");
    if (left.values.isEmpty()) return left;

    std::vector<float> values;
    values.reserve(left.values.samples().size());
    for (std::size_t i = 0; i < left.values.samples().size(); ++i)
        values.push_back(static_cast<float>(
            result(left.values.samples()[i], right.values.samples()[i], operation)));
    return {left.region, Raster<float>(left.width(), left.height(), std::move(values))};
}

Field scale(const Field& field, double factor, double offset)
{
    if (!std::isfinite(factor) || !std::isfinite(offset))
        throw MapError("the factor or the offset is not a finite number");
    if (field.values.isEmpty()) return field;

    std::vector<float> values;
    values.reserve(field.values.samples().size());
    for (const float value : field.values.samples())
        values.push_back(static_cast<float>(factor * value + offset));
    return {field.region, Raster<float>(field.width(), field.height(), std::move(values))};
}

} // namespace Maps
