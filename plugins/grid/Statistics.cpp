#include "Statistics.h"

#include "Earth.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Maps
{
namespace
{

/// In units that are the same for all rows.
double areaOfPixel(const Field& field, int row)
{
    const double half = 0.5 * field.degreesPerRow();
    const double latitude = field.latitude(row);
    return std::sin((latitude + half) * kRadiansPerDegree) -
           std::sin((latitude - half) * kRadiansPerDegree);
}

/// Mean and sum of squares by what each value adds to them, so that a great mean does not swallow a
/// small deviation (D. H. D. West, "Updating mean and variance estimates", Communications of the
/// ACM 22(9), 1979).
class Tally
{
public:
    void add(double value, double area)
    {
        all_ += area;
        if (!std::isfinite(value)) return;
        least_ = std::min(least_, value);
        greatest_ = std::max(greatest_, value);
        known_ += area;
        const double distance = value - mean_;
        mean_ += distance * area / known_;
        squares_ += area * distance * (value - mean_);
    }

    Statistics result() const
    {
        constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
        if (known_ <= 0.0) return {kNone, kNone, kNone, kNone, 1.0};
        return {least_, greatest_, mean_, std::sqrt(squares_ / known_),
                std::max(0.0, 1.0 - known_ / all_)};
    }

private:
    double all_ = 0.0;
    double known_ = 0.0;
    double mean_ = 0.0;
    double squares_ = 0.0;
    double least_ = std::numeric_limits<double>::infinity();
    double greatest_ = -std::numeric_limits<double>::infinity();
};

} // namespace

Statistics statistics(const Field& field)
{
    if (field.values.isEmpty()) throw MapError("there is no field");
    Tally tally;
    for (int row = 0; row < field.height(); ++row)
    {
        const double area = areaOfPixel(field, row);
        for (const float value : field.values.row(row)) tally.add(value, area);
    }
    return tally.result();
}

} // namespace Maps
