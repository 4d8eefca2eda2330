#pragma once

#include "Vector.h"

#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace Volumes
{

/// A corner of triangles, where it is and how the surface stands there.
struct Vertex
{
    std::array<float, 3> place{};  ///< millimetres in the world, see Volume
    std::array<float, 3> normal{}; ///< of length 1, outwards; zeros where the surface has none

    friend bool operator==(const Vertex&, const Vertex&) = default;
};

using Triangle = std::array<std::uint32_t, 3>; ///< numbers of vertices, anticlockwise from outside

/// A surface of triangles.
struct Triangles
{
    std::vector<Vertex> vertices;
    std::vector<Triangle> triangles;

    friend bool operator==(const Triangles&, const Triangles&) = default;
};

/// A handle on a surface that nobody changes any more. Cheap to copy; equal if the surfaces are. A
/// default mesh is empty.
class Mesh
{
public:
    Mesh() : shared_(std::make_shared<const Triangles>()) {}
    explicit Mesh(Triangles surface)
        : shared_(std::make_shared<const Triangles>(std::move(surface)))
    {
    }

    const std::vector<Vertex>& vertices() const { return shared_->vertices; }
    const std::vector<Triangle>& triangles() const { return shared_->triangles; }
    bool isEmpty() const { return shared_->triangles.empty(); }

    friend bool operator==(const Mesh& left, const Mesh& right)
    {
        return left.shared_ == right.shared_ || *left.shared_ == *right.shared_;
    }

private:
    std::shared_ptr<const Triangles> shared_; // never null
};

inline Vector vectorOf(const std::array<float, 3>& numbers)
{
    return {numbers[0], numbers[1], numbers[2]};
}

inline std::array<float, 3> numbersOf(const Vector& vector)
{
    return {static_cast<float>(vector.x), static_cast<float>(vector.y),
            static_cast<float>(vector.z)};
}

} // namespace Volumes
