#pragma once

#include "Mesh.h"
#include "Volume.h"

#include <plugins/grid/tests/Support.h>

#include <map>
#include <utility>
#include <vector>

namespace Volumes
{

using Maps::errorOf;

/// A volume of which each value is made from the place of its voxel in the world.
template <class Function>
Volume volumeOf(const Counts& counts, const Affine& toWorld, Function&& valueAt)
{
    std::vector<float> samples;
    for (int k = 0; k < counts[2]; ++k)
        for (int j = 0; j < counts[1]; ++j)
            for (int i = 0; i < counts[0]; ++i)
                samples.push_back(
                    static_cast<float>(valueAt(toWorld.place({i * 1.0, j * 1.0, k * 1.0}))));
    return {counts, toWorld, std::move(samples)};
}

/// A lattice with `spacing` millimetres along the axes of the world, and its middle at the origin.
inline Affine centred(const Counts& counts, double spacing)
{
    return {{spacing, 0.0, 0.0},
            {0.0, spacing, 0.0},
            {0.0, 0.0, spacing},
            {-0.5 * spacing * (counts[0] - 1), -0.5 * spacing * (counts[1] - 1),
             -0.5 * spacing * (counts[2] - 1)}};
}

/// The distance from the middle, negative: a sphere is where it is -radius, and higher inside.
inline auto ballAround(const Vector& middle)
{
    return [middle](const Vector& place) { return -length(place - middle); };
}

/// How often each edge is walked, in the direction of the triangles that walk it.
inline std::map<std::pair<std::uint32_t, std::uint32_t>, int> edgesOf(const Mesh& mesh)
{
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> edges;
    for (const Triangle& triangle : mesh.triangles())
        for (std::size_t i = 0; i < 3; ++i) ++edges[{triangle[i], triangle[(i + 1) % 3]}];
    return edges;
}

/// Whether each edge is shared by two triangles that walk it in opposite directions.
inline bool isClosed(const Mesh& mesh)
{
    const auto edges = edgesOf(mesh);
    for (const auto& [edge, count] : edges)
    {
        const auto back = edges.find({edge.second, edge.first});
        if (count != 1 || back == edges.end() || back->second != 1) return false;
    }
    return true;
}

inline Vector corner(const Mesh& mesh, const Triangle& triangle, std::size_t number)
{
    return vectorOf(mesh.vertices()[triangle[number]].place);
}

/// Half of the product of two sides: as long as the area, and outwards.
inline Vector areaOf(const Mesh& mesh, const Triangle& triangle)
{
    const Vector first = corner(mesh, triangle, 0);
    return 0.5 * cross(corner(mesh, triangle, 1) - first, corner(mesh, triangle, 2) - first);
}

inline double areaOf(const Mesh& mesh)
{
    double area = 0.0;
    for (const Triangle& triangle : mesh.triangles()) area += length(areaOf(mesh, triangle));
    return area;
}

/// What a closed mesh encloses; negative if it is inside out.
inline double contentOf(const Mesh& mesh)
{
    double content = 0.0;
    for (const Triangle& triangle : mesh.triangles())
        content += dot(corner(mesh, triangle, 0), areaOf(mesh, triangle)) / 3.0;
    return content;
}

} // namespace Volumes
