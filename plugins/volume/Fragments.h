#pragma once

#include "Camera.h"
#include "Mesh.h"

#include <vector>

namespace Volumes
{

/// What is nearest at each pixel of a picture, row 0 at the top: a z-buffer.
struct Fragments
{
    int width = 0;
    int height = 0;
    std::vector<float> depths; ///< millimetres towards the camera; -infinity where nothing is
    std::vector<std::array<float, 3>> normals; ///< in the world; not always of length 1
    double pixelsPerMillimetre = 1.0;

    bool isCovered(std::size_t pixel) const;
};

/// Draws the triangles of a mesh, both sides alike; a normal that points away from the camera is
/// turned round. Depths and normals are interpolated as perspective wants it.
Fragments rasterise(const Mesh& mesh, const Projection& projection, int width, int height);

} // namespace Volumes
