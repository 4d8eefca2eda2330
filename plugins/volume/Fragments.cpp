#include "Fragments.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace Volumes
{
namespace
{

constexpr float kNothing = -std::numeric_limits<float>::infinity();

/// Twice the area of a triangle, positive if it runs clockwise as it is seen.
double doubleArea(const Projected& a, const Projected& b, double x, double y)
{
    return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x);
}

class Rasteriser
{
public:
    Rasteriser(const Mesh& mesh, const Projection& projection, int width, int height)
        : mesh_(mesh), projection_(projection)
    {
        const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        result_ = {width, height, std::vector<float>(pixels, kNothing),
                   std::vector<std::array<float, 3>>(pixels), projection.pixelsPerMillimetre()};
        for (const Vertex& vertex : mesh.vertices())
            seen_.push_back(projection.place(vectorOf(vertex.place)));
    }

    Fragments draw()
    {
        for (const Triangle& triangle : mesh_.triangles()) drawTriangle(triangle);
        toDepths();
        return std::move(result_);
    }

private:
    /// Until the end the depths are kept as nearness.
    void drawTriangle(const Triangle& triangle)
    {
        const Projected& a = seen_[triangle[0]];
        const Projected& b = seen_[triangle[1]];
        const Projected& c = seen_[triangle[2]];
        const double area = doubleArea(a, b, c.x, c.y);
        if (area == 0.0) return;

        const int left = first(std::min({a.x, b.x, c.x}));
        const int right = last(std::max({a.x, b.x, c.x}), result_.width);
        const int top = first(std::min({a.y, b.y, c.y}));
        const int bottom = last(std::max({a.y, b.y, c.y}), result_.height);
        for (int y = top; y <= bottom; ++y)
            for (int x = left; x <= right; ++x)
            {
                const double atA = doubleArea(b, c, x + 0.5, y + 0.5) / area;
                const double atB = doubleArea(c, a, x + 0.5, y + 0.5) / area;
                const double atC = 1.0 - atA - atB;
                if (atA >= 0.0 && atB >= 0.0 && atC >= 0.0)
                    drawPixel(x, y, triangle, {atA, atB, atC});
            }
    }

    /// The first and the last pixel whose middle can lie beyond a bound, within the picture.
    static int first(double bound)
    {
        return static_cast<int>(std::max(0.0, std::ceil(bound - 0.5)));
    }
    static int last(double bound, int count)
    {
        return static_cast<int>(std::min(count - 1.0, std::floor(bound - 0.5)));
    }

    void drawPixel(int x, int y, const Triangle& triangle, const Vector& part)
    {
        const double nearness = part.x * seen_[triangle[0]].nearness +
                                part.y * seen_[triangle[1]].nearness +
                                part.z * seen_[triangle[2]].nearness;
        const std::size_t pixel =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(result_.width) +
            static_cast<std::size_t>(x);
        if (nearness <= double{result_.depths[pixel]}) return;
        result_.depths[pixel] = static_cast<float>(nearness);
        result_.normals[pixel] = numbersOf(normal(triangle, part));
    }

    Vector normal(const Triangle& triangle, const Vector& part) const
    {
        const Vector mixed =
            weight(triangle[0], part.x) + weight(triangle[1], part.y) + weight(triangle[2], part.z);
        return dot(mixed, projection_.view().back) < 0.0 ? -1.0 * mixed : mixed;
    }

    /// The share of a vertex in what is seen at a pixel: that in the picture times how near it is,
    /// since what is further away is seen shorter.
    Vector weight(std::uint32_t vertex, double part) const
    {
        const double shrunk = projection_.isParallel() ? part : part * seen_[vertex].nearness;
        return shrunk * vectorOf(mesh_.vertices()[vertex].normal);
    }

    void toDepths()
    {
        for (float& depth : result_.depths)
            if (depth != kNothing) depth = static_cast<float>(projection_.depth(depth));
    }

    const Mesh& mesh_;
    const Projection& projection_;
    std::vector<Projected> seen_;
    Fragments result_;
};

} // namespace

bool Fragments::isCovered(std::size_t pixel) const
{
    return depths[pixel] != kNothing;
}

Fragments rasterise(const Mesh& mesh, const Projection& projection, int width, int height)
{
    return Rasteriser(mesh, projection, width, height).draw();
}

} // namespace Volumes
