#include "Isosurface.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace Volumes
{
namespace
{

/// The eight corners of a cell by three bits: 1 along the first axis, 2 along the second, 4 along
/// the third.
constexpr int kCorners = 8;

using Tetrahedron = std::array<int, 4>; // corners of a cell

/// Freudenthal's six, one for each way to walk from corner 0 to corner 7 along three edges. Their
/// corners are in positive order: seen from the first, the others run anticlockwise outwards.
constexpr std::array<Tetrahedron, 6> kTetrahedra = {
    {{0, 1, 3, 7}, {0, 5, 1, 7}, {0, 3, 2, 7}, {0, 2, 6, 7}, {0, 4, 5, 7}, {0, 6, 4, 7}}};

/// How the surface passes a tetrahedron, by which of its corners are inside: bit n for the nth. Doi
/// and Koide's cases, each with an even reordering of the corners, so that those that are alone
/// come first: one that is inside, one that is outside, or two that are inside.
struct Passage
{
    enum class Kind
    {
        None,
        OneInside,
        OneOutside,
        TwoInside
    };
    Kind kind;
    std::array<int, 4> order;
};

using enum Passage::Kind;

constexpr std::array<Passage, 16> kPassages = {{{None, {}},
                                                {OneInside, {0, 1, 2, 3}},
                                                {OneInside, {1, 0, 3, 2}},
                                                {TwoInside, {0, 1, 2, 3}},
                                                {OneInside, {2, 0, 1, 3}},
                                                {TwoInside, {0, 2, 3, 1}},
                                                {TwoInside, {1, 2, 0, 3}},
                                                {OneOutside, {3, 0, 2, 1}},
                                                {OneInside, {3, 0, 2, 1}},
                                                {TwoInside, {0, 3, 1, 2}},
                                                {TwoInside, {1, 3, 2, 0}},
                                                {OneOutside, {2, 0, 1, 3}},
                                                {TwoInside, {2, 3, 0, 1}},
                                                {OneOutside, {1, 0, 3, 2}},
                                                {OneOutside, {0, 1, 2, 3}},
                                                {None, {}}}};

/// The gradient in the world, by central differences; at the sides, one-sided ones.
class Gradient
{
public:
    explicit Gradient(const Volume& volume) : volume_(volume) {}

    Vector at(const std::array<int, 3>& voxel) const
    {
        return volume_.toWorld().turnedGradient(
            {along(voxel, 0), along(voxel, 1), along(voxel, 2)});
    }

private:
    double along(const std::array<int, 3>& voxel, std::size_t axis) const
    {
        std::array<int, 3> before = voxel;
        std::array<int, 3> after = voxel;
        before[axis] = std::max(0, voxel[axis] - 1);
        after[axis] = std::min(volume_.counts()[axis] - 1, voxel[axis] + 1);
        const int distance = after[axis] - before[axis];
        return distance == 0 ? 0.0 : (double{value(after)} - value(before)) / distance;
    }

    float value(const std::array<int, 3>& voxel) const
    {
        return volume_.at(voxel[0], voxel[1], voxel[2]);
    }

    const Volume& volume_;
};

/// The vertices on the edges of two layers of voxels, by number, so that each is made once. An edge
/// leads from a voxel to one of seven others, none of which is before it along any axis, and
/// belongs to that voxel.
class EdgeVertices
{
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFFU;

    explicit EdgeVertices(const Counts& counts)
        : columns_(static_cast<std::size_t>(counts[0])),
          layers_{Layer(kEdges * columns_ * static_cast<std::size_t>(counts[1]), kNone),
                  Layer(kEdges * columns_ * static_cast<std::size_t>(counts[1]), kNone)}
    {
    }

    /// Forgets the lower layer; the upper one is the lower from now on.
    void rise()
    {
        std::swap(layers_[0], layers_[1]);
        std::ranges::fill(layers_[1], kNone);
    }

    /// \param layer 0 for the lower one
    /// \param edge 1 to 7, the bits of the axes along which it leads
    std::uint32_t& at(int column, int row, int layer, int edge)
    {
        const std::size_t voxel =
            static_cast<std::size_t>(row) * columns_ + static_cast<std::size_t>(column);
        return layers_[static_cast<std::size_t>(layer)]
                      [voxel * kEdges + static_cast<std::size_t>(edge) - 1];
    }

private:
    static constexpr std::size_t kEdges = 7;
    using Layer = std::vector<std::uint32_t>;

    std::size_t columns_;
    std::array<Layer, 2> layers_;
};

/// Walks the cells of a volume, layer by layer, and collects their triangles.
class CellWalk
{
public:
    CellWalk(const Volume& volume, double level)
        : volume_(volume), level_(level), gradient_(volume), edges_(volume.counts()),
          isMirrored_(volume.toWorld().determinant() < 0.0)
    {
    }

    Triangles walk()
    {
        const auto [columns, rows, slices] = volume_.counts();
        for (int k = 0; k + 1 < slices; ++k, edges_.rise())
            for (int j = 0; j + 1 < rows; ++j)
                for (int i = 0; i + 1 < columns; ++i) visit({i, j, k});
        return std::move(surface_);
    }

private:
    void visit(const std::array<int, 3>& cell)
    {
        unsigned inside = 0;
        for (int corner = 0; corner < kCorners; ++corner)
        {
            const std::array<int, 3> voxel = voxelAt(cell, corner);
            const float value = volume_.at(voxel[0], voxel[1], voxel[2]);
            values_[static_cast<std::size_t>(corner)] = value;
            if (value >= level_) inside |= 1U << static_cast<unsigned>(corner);
        }
        if (inside == 0 || inside == 0xFF) return;
        cell_ = cell;
        for (const Tetrahedron& tetrahedron : kTetrahedra) pass(tetrahedron, inside);
        if (surface_.triangles.size() > kMostTriangles)
            throw MapError("the surface has more than " + std::to_string(kMostTriangles) +
                           " triangles");
    }

    static std::array<int, 3> voxelAt(const std::array<int, 3>& cell, int corner)
    {
        return {cell[0] + (corner & 1), cell[1] + (corner >> 1 & 1), cell[2] + (corner >> 2)};
    }

    void pass(const Tetrahedron& corners, unsigned insideOfCell)
    {
        std::size_t inside = 0;
        for (std::size_t n = 0; n < 4; ++n)
            inside |= static_cast<std::size_t>(insideOfCell >> corners[n] & 1U) << n;
        const Passage& passage = kPassages[inside];
        if (passage.kind == None) return;

        Tetrahedron by = {};
        for (std::size_t n = 0; n < 4; ++n)
            by[n] = corners[static_cast<std::size_t>(passage.order[n])];
        switch (passage.kind)
        {
            case OneInside:
                add(vertex(by[0], by[1]), vertex(by[0], by[2]), vertex(by[0], by[3]));
                break;
            case OneOutside:
                add(vertex(by[0], by[3]), vertex(by[0], by[2]), vertex(by[0], by[1]));
                break;
            default: addQuadrangle(by);
        }
    }

    void addQuadrangle(const Tetrahedron& by)
    {
        const std::uint32_t first = vertex(by[0], by[2]);
        const std::uint32_t third = vertex(by[1], by[3]);
        add(first, vertex(by[0], by[3]), third);
        add(first, third, vertex(by[1], by[2]));
    }

    void add(std::uint32_t a, std::uint32_t b, std::uint32_t c)
    {
        if (isMirrored_)
            surface_.triangles.push_back({a, c, b});
        else
            surface_.triangles.push_back({a, b, c});
    }

    /// The vertex on the edge between two corners of the cell, of which one has all bits of the
    /// other: that is so of all edges of Freudenthal's tetrahedra.
    std::uint32_t vertex(int one, int other)
    {
        const int low = one & other;
        const int high = one | other;
        std::uint32_t& known =
            edges_.at(cell_[0] + (low & 1), cell_[1] + (low >> 1 & 1), low >> 2, high ^ low);
        if (known == EdgeVertices::kNone)
        {
            known = static_cast<std::uint32_t>(surface_.vertices.size());
            surface_.vertices.push_back(between(low, high));
        }
        return known;
    }

    /// A vertex keeps off the ends of its edge: on a voxel, all edges of that one would meet in
    /// triangles without size.
    Vertex between(int low, int high) const
    {
        constexpr double kMargin = 1e-3;
        const double from = values_[static_cast<std::size_t>(low)];
        const double to = values_[static_cast<std::size_t>(high)];
        const double part = std::clamp((level_ - from) / (to - from), kMargin, 1.0 - kMargin);
        const std::array<int, 3> first = voxelAt(cell_, low);
        const std::array<int, 3> second = voxelAt(cell_, high);
        const Vector place = (1.0 - part) * vectorOf(first) + part * vectorOf(second);
        const Vector rise = (1.0 - part) * gradient_.at(first) + part * gradient_.at(second);
        return {numbersOf(volume_.toWorld().place(place)), numbersOf(direction(-1.0 * rise))};
    }

    static Vector vectorOf(const std::array<int, 3>& voxel)
    {
        return {voxel[0] * 1.0, voxel[1] * 1.0, voxel[2] * 1.0};
    }

    const Volume& volume_;
    const double level_;
    const Gradient gradient_;
    EdgeVertices edges_;
    const bool isMirrored_; // the lattice is left-handed
    std::array<int, 3> cell_{};
    std::array<float, kCorners> values_{};
    Triangles surface_;
};

} // namespace

Mesh isosurface(const Volume& volume, double level)
{
    if (!std::isfinite(level)) throw MapError("the level of the surface is not a finite number");
    return volume.isEmpty() ? Mesh() : Mesh(CellWalk(volume, level).walk());
}

} // namespace Volumes
