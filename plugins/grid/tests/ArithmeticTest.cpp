#include "Arithmetic.h"
#include "WordForm.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Maps
{
namespace
{

constexpr Region kRegion{10, 20, -5, 5};

Field eastward()
{
    return fieldOf(kRegion, 8, 6, [](double longitude, double) { return longitude; });
}

Field northward()
{
    return fieldOf(kRegion, 8, 6, [](double, double latitude) { return latitude; });
}

/// Whether each value is what a function makes of longitude and latitude.
template <class Function>
void expectField(const Field& field, Function&& valueAt)
{
    for (int row = 0; row < field.height(); ++row)
        for (int column = 0; column < field.width(); ++column)
            EXPECT_NEAR(field.values.at(column, row),
                        valueAt(field.longitude(column), field.latitude(row)), 1e-4);
}

TEST(Arithmetic, CombinesFieldsPixelByPixel)
{
    expectField(combine(eastward(), northward(), Operation::Add),
                [](double x, double y) { return x + y; });
    expectField(combine(eastward(), northward(), Operation::Subtract),
                [](double x, double y) { return x - y; });
    expectField(combine(eastward(), northward(), Operation::Multiply),
                [](double x, double y) { return x * y; });
}

TEST(Arithmetic, ScalesAField)
{
    expectField(scale(eastward(), -2.0, 7.0), [](double x, double) { return 7.0 - 2.0 * x; });
}

TEST(Arithmetic, HasNoValueWhereOneHasNone)
{
    const float none = std::numeric_limits<float>::quiet_NaN();
    const Field gap{kRegion, Raster<float>(2, 1, {none, 3.0F})};
    const Field whole{kRegion, Raster<float>(2, 1, {1.0F, 2.0F})};

    for (const Field& result : {combine(gap, whole, Operation::Add),
                                combine(whole, gap, Operation::Multiply), scale(gap, 2.0, 0.0)})
    {
        EXPECT_TRUE(std::isnan(result.values.at(0, 0)));
        EXPECT_TRUE(std::isfinite(result.values.at(1, 0)));
    }
}

TEST(Arithmetic, RefusesFieldsThatDoNotLieOnEachOther)
{
    const auto zero = [](double, double) { return 0.0; };

    EXPECT_EQ(
        errorOf([&] { combine(eastward(), fieldOf({10, 20, -5, 6}, 8, 6, zero), Operation::Add); }),
        "the two fields are not of the same region");
    EXPECT_EQ(errorOf([&] { combine(eastward(), fieldOf(kRegion, 8, 7, zero), Operation::Add); }),
              "the two fields are not of the same size");
}

TEST(Arithmetic, RefusesNumbersThatAreNotFinite)
{
    EXPECT_EQ(errorOf([] { scale(eastward(), std::nan(""), 0.0); }),
              "the factor or the offset is not a finite number");
}

TEST(Arithmetic, HasAWordForEachOperation)
{
    using Form = WordForm<Operation, kOperationWords>;
    Operation read = Operation::Multiply;

    EXPECT_TRUE(Form::setValueFromText(read, "subtract"));
    EXPECT_EQ(read, Operation::Subtract);
    EXPECT_FALSE(Form::setValueFromText(read, "divide"));
    EXPECT_EQ(Form::Text(read), "subtract");
}

} // namespace
} // namespace Maps
