#pragma once

#include "PictureValues.h"
#include "ResultSaver.h"

#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/ValueTraits.h>

/// From fields to a picture in a file.
///
/// What an object cannot do is thrown as MapError, through all requests that wait for it.
namespace Maps
{

using Quorl::InputSlot;
using Quorl::OutputSlot;
using Quorl::perContext;

using PictureSaver = ResultSaver<Image>;

/// Colours the heights.
class Colourer final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Field> heights_{*this, "heights", {}, perContext()};
    const InputSlot<double> low_{*this, "low", -110.0, perContext()};
    const InputSlot<double> high_{*this, "high", 90.0, perContext()};
    const OutputSlot<LinearImage> colours_{*this, "colours"};
    const OutputSlot<ColourMap> map_{*this, "map"};
};

/// Puts colours, shade and contours together, frames them, and writes the picture.
class PictureWriter final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    std::string subtitle(const Quorl::VRequest& request) const;

    const InputSlot<LinearImage> colours_{*this, "colours", {}, perContext()};
    const InputSlot<ColourMap> map_{*this, "map", {}, perContext()};
    const InputSlot<Field> shade_{*this, "shade", {}, perContext()};
    const InputSlot<Light> light_{*this, "light", {}, perContext()};
    const InputSlot<ContourSet> contours_{*this, "contours", {}, perContext()};
    const InputSlot<double> sigma_{*this, "sigma"}; // the smoothing's, to be told
    const InputSlot<double> contrast_{*this, "contrast", 0.8};
    const InputSlot<std::string> title_{*this, "title", {}, perContext()};
    const InputSlot<std::string> unit_{*this, "unit", "m", perContext()};
    const InputSlot<std::string> file_{*this, "file", {}, perContext()};
};

/// Puts a caption, a line and a colour bar around a picture, and writes it, if it is given a file:
/// a PPM file if that ends so, else a PNG file. It can also be saved as PNG and PPM: what the last
/// update made.
class PictureAnnotator final : public Quorl::VObject
{
public:
    PictureAnnotator(const std::string& wantedName, int givenPriority,
                     const Quorl::RefPtr<Quorl::VCreationPreferences>& wanted);
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<LinearImage> picture_{*this, "picture", {}, perContext()};
    const InputSlot<ColourMap> map_{*this, "map", {}, perContext()};
    const InputSlot<bool> bar_{*this, "bar", false, perContext()}; // of the map's colours
    const InputSlot<std::string> title_{*this, "title", {}, perContext()};
    const InputSlot<std::string> subtitle_{*this, "subtitle", {}, perContext()};
    const InputSlot<std::string> unit_{*this, "unit", "m", perContext()};
    const InputSlot<Rgb> paper_{*this, "paper", {255, 255, 255}, perContext()};
    const InputSlot<bool> frame_{*this, "frame", true, perContext()};
    const InputSlot<std::string> file_{*this, "file", {}, perContext()};
    const OutputSlot<LinearImage> annotated_{*this, "annotated"};
    const Quorl::RefPtr<PictureSaver> png_;
    const Quorl::RefPtr<PictureSaver> ppm_;
};

/// Puts two pictures into one.
class PictureComposer final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<LinearImage> first_{*this, "first", {}, perContext()};
    const InputSlot<LinearImage> second_{*this, "second", {}, perContext()};
    const InputSlot<bool> below_{*this, "below", false, perContext()};
    const InputSlot<int> gap_{*this, "gap", 0, perContext()}; // pixels
    const InputSlot<Rgb> background_{*this, "background", {255, 255, 255}, perContext()};
    const OutputSlot<LinearImage> picture_{*this, "picture"};
};

/// Plots what a field shows along a great circle.
class ProfilePlotter final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double precision) override;

private:
    const InputSlot<Profile> profile_{*this, "profile", {}, perContext()};
    const InputSlot<int> width_{*this, "width", 1000, perContext()};  // pixels
    const InputSlot<int> height_{*this, "height", 500, perContext()}; // pixels
    const InputSlot<std::string> unit_{*this, "unit", "m", perContext()};
    const OutputSlot<LinearImage> picture_{*this, "picture"};
};

} // namespace Maps
