#pragma once

#include "Camera.h"
#include "Mesh.h"

#include <plugins/picture/Image.h>

namespace Volumes
{

/// A distant light, told from the camera, with what fills the shadows; angles are in degrees, the
/// others are in [0, 1].
struct Lamp
{
    double azimuth = -35.0;  ///< to the right of the camera if positive, in [-180, 180]
    double elevation = 40.0; ///< above it, in [-90, 90]
    double ambient = 0.25;   ///< of the light comes from all sides
    double gloss = 0.2;      ///< how strongly the light is mirrored
    double occlusion = 0.6;  ///< how dark hollows are

    friend bool operator==(const Lamp&, const Lamp&) = default;
};

/// What a surface and its picture are like.
struct Look
{
    Maps::LinearRgb surface;
    Maps::LinearRgb background;
    int width = 0; ///< pixels, in [16, kMostPixelsASide]
    int height = 0;

    friend bool operator==(const Look&, const Look&) = default;
};

inline constexpr int kMostPixelsASide = 4096;

/// The picture of a surface: matt with a gloss (J. F. Blinn, "Models of light reflection for
/// computer synthesized pictures", SIGGRAPH 1977), in linear light, with smooth normals, and four
/// samples a pixel.
///
/// Hollows are darkened by how far a pixel lies behind the mean depth of those around it (T. Luft,
/// C. Colditz and O. Deussen, "Image enhancement by unsharp masking the depth buffer", SIGGRAPH
/// 2006), within 4 millimetres.
/// An empty mesh gives the background.
/// \throws MapError for a camera, lamp or size beyond its range.
Maps::LinearImage render(const Mesh& mesh, const Camera& camera, const Lamp& lamp,
                         const Look& look);

} // namespace Volumes
