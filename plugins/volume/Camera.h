#pragma once

#include "Mesh.h"

namespace Volumes
{

/// From where a surface is looked at. Angles are in degrees.
struct Camera
{
    double azimuth = 0.0;   ///< around the head, in [-360, 360]: 0 in front of the face, 90 at the
                            ///< person's left, 180 behind
    double elevation = 0.0; ///< in [-90, 90]: 90 from above
    double roll = 0.0;      ///< how far the camera is turned clockwise, in [-360, 360]
    double fieldOfView = 20.0; ///< in [0, 90]; 0 makes all rays parallel
    double zoom = 1.0;         ///< in [0.1, 20]; 1 has the whole surface fill the picture

    friend bool operator==(const Camera&, const Camera&) = default;
};

/// \throws MapError for an angle or a zoom beyond its range.
void checkCamera(const Camera& camera);

/// The directions of a camera in the world.
struct View
{
    Vector right;
    Vector up;
    Vector back; ///< from what is looked at to the camera
};

/// \pre The camera is good (see checkCamera).
View viewOf(const Camera& camera);

/// A place as a camera sees it.
struct Projected
{
    double x = 0.0;        ///< pixels to the right, from the left side of the picture
    double y = 0.0;        ///< pixels downwards, from the top
    double nearness = 0.0; ///< greater means nearer; linear along each straight line in the picture
};

/// Takes places to a picture. What is looked at is the middle of the surface's bounding box; the
/// surface as it is seen stands in the middle of the picture, and with a zoom of 1 leaves a margin
/// of 4 percent at the nearer sides.
class Projection
{
public:
    /// \pre the camera is good, the mesh is not empty, width and height are positive.
    Projection(const Mesh& mesh, const Camera& camera, int width, int height);

    Projected place(const Vector& world) const;

    const View& view() const { return view_; }
    bool isParallel() const { return distance_ == 0.0; }

    /// Millimetres towards the camera for a nearness, from the middle of the surface.
    double depth(double nearness) const;

    double pixelsPerMillimetre() const { return scale_; } ///< in the depth of the middle

private:
    /// x and y in millimetres as seen in the depth of the middle.
    Projected flat(const Vector& world) const;

    View view_;
    Vector middle_;
    double radius_ = 1.0;   // of a sphere around all vertices
    double distance_ = 0.0; // of the camera from the middle; 0 where rays are parallel
    double scale_ = 1.0;
    double x_ = 0.0; // of the middle of the picture
    double y_ = 0.0;
    double width_ = 0.0;
    double height_ = 0.0;
};

} // namespace Volumes
