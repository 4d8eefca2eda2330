#pragma once

#include "Field.h"
#include "Image.h"

namespace Maps
{

/// Colours for heights of a range in metres: pale at zero, through cyan to indigo below it, through
/// yellow and orange to crimson above it. Cheap to copy; equal if the ranges are.
///
/// Equal steps in metres are equal steps to the eye, on either side of zero and across it. Each
/// side is a curve in OKLab, in cylindrical coordinates, of a parameter s from 0 to 1:
///
///     lightness = 0.955 - 0.545 s
///     chroma    = 0.155 (1 - (1 - s)^3)
///     hue       = 208 + 72 s degrees (below zero),  94 - 66 s degrees (above zero)
///
/// walked at constant speed, that is, by its length; the longer curve ends where its length is
/// that of the shorter one. So lightness falls evenly from zero to either end, and the sign can be
/// told by hue alone. One scale serves both sides: the end of the range that is further from zero
/// has the end of its curve, and a range that is not symmetric leaves part of the other unused.
class ColourMap
{
public:
    /// From 100 m below to 100 m above.
    ColourMap() = default;

    /// \throws MapError unless both are finite and low < high.
    ColourMap(double lowMetres, double highMetres);

    double low() const { return low_; }   ///< metres
    double high() const { return high_; } ///< metres

    /// The colour of a height; beyond the range, that of its nearer end.
    LinearRgb at(double metres) const;

    /// The heights of a field, coloured.
    LinearImage paint(const Field& heights) const;

    friend bool operator==(const ColourMap&, const ColourMap&) = default;

private:
    double low_ = -100.0;
    double high_ = 100.0;
};

} // namespace Maps
