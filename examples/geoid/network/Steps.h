#pragma once

#include "network/Step.h"
#include "network/Values.h"

/// The seven steps from a grid file to a picture. Angles are in degrees, heights in metres.
namespace Geoid
{

/// Reads a grid file.
class GridReader final : public Step
{
public:
    explicit GridReader(Journal& journal) : Step("reader", journal) {}

private:
    void compute(const Quorl::VRequest& request) override;

    const Input<std::string> file_{*this, "file", Scope::Everywhere};
    const Output<Grid> grid_{*this, "grid"};
};

/// Lays a region out in pixels.
class RegionSampler final : public Step
{
public:
    explicit RegionSampler(Journal& journal) : Step("region", journal) {}

private:
    void compute(const Quorl::VRequest& request) override;

    const Input<Grid> grid_{*this, "grid", Scope::PerContext};
    const Input<double> west_{*this, "west", Scope::PerContext, -180.0};
    const Input<double> east_{*this, "east", Scope::PerContext, 180.0};
    const Input<double> south_{*this, "south", Scope::PerContext, -90.0};
    const Input<double> north_{*this, "north", Scope::PerContext, 90.0};
    const Input<int> width_{*this, "width", Scope::PerContext, 1440};  // pixels
    const Input<int> height_{*this, "height", Scope::PerContext, 720}; // pixels
    const Output<Field> heights_{*this, "heights"};
};

/// Takes the finest detail away.
class Smoother final : public Step
{
public:
    explicit Smoother(Journal& journal) : Step("smoothing", journal) {}

private:
    void compute(const Quorl::VRequest& request) override;

    const Input<Field> heights_{*this, "heights", Scope::PerContext};
    const Input<double> sigma_{*this, "sigma", Scope::Everywhere, 0.5};
    const Output<Field> smoothed_{*this, "smoothed"};
};

/// Lights the heights as if they were mountains.
class Hillshader final : public Step
{
public:
    explicit Hillshader(Journal& journal) : Step("hillshade", journal) {}

private:
    void compute(const Quorl::VRequest& request) override;

    const Input<Field> heights_{*this, "heights", Scope::PerContext};
    const Input<double> azimuth_{*this, "azimuth", Scope::PerContext, 315.0};
    const Input<double> altitude_{*this, "altitude", Scope::PerContext, 45.0};
    const Input<double> exaggeration_{*this, "exaggeration", Scope::PerContext, 20000.0};
    const Output<Field> shade_{*this, "shade"};
    const Output<Light> light_{*this, "light"};
};

/// Colours the heights.
class Colourer final : public Step
{
public:
    explicit Colourer(Journal& journal) : Step("colours", journal) {}

private:
    void compute(const Quorl::VRequest& request) override;

    const Input<Field> heights_{*this, "heights", Scope::PerContext};
    const Input<double> low_{*this, "low", Scope::PerContext, -110.0};
    const Input<double> high_{*this, "high", Scope::PerContext, 90.0};
    const Output<LinearImage> colours_{*this, "colours"};
    const Output<ColourMap> map_{*this, "map"};
};

/// Finds the lines of equal height.
class ContourTracer final : public Step
{
public:
    explicit ContourTracer(Journal& journal) : Step("contours", journal) {}

private:
    void compute(const Quorl::VRequest& request) override;

    const Input<Field> heights_{*this, "heights", Scope::PerContext};
    const Input<double> interval_{*this, "interval", Scope::PerContext, 10.0};
    const Output<ContourSet> contours_{*this, "contours"};
};

/// Puts colours, shade and contours together, frames them, and writes the picture.
class PictureWriter final : public Step
{
public:
    explicit PictureWriter(Journal& journal) : Step("picture", journal) {}

private:
    void compute(const Quorl::VRequest& request) override;
    std::string subtitle(const Quorl::VRequest& request) const;

    const Input<LinearImage> colours_{*this, "colours", Scope::PerContext};
    const Input<ColourMap> map_{*this, "map", Scope::PerContext};
    const Input<Field> shade_{*this, "shade", Scope::PerContext};
    const Input<Light> light_{*this, "light", Scope::PerContext};
    const Input<ContourSet> contours_{*this, "contours", Scope::PerContext};
    const Input<double> sigma_{*this, "sigma", Scope::Everywhere}; // the smoothing's, to be told
    const Input<double> contrast_{*this, "contrast", Scope::Everywhere, 0.8};
    const Input<std::string> title_{*this, "title", Scope::PerContext};
    const Input<std::string> file_{*this, "file", Scope::PerContext};
};

} // namespace Geoid
