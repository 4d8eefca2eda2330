#include "MeshParts.h"

#include <plugins/grid/MapError.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace Volumes
{
namespace
{

/// Sets of vertices, each known by its earliest member (B. A. Galler and M. J. Fischer, "An
/// improved equivalence algorithm", Communications of the ACM 7(5), 1964).
class Sets
{
public:
    explicit Sets(std::size_t vertices) : parents_(vertices)
    {
        std::iota(parents_.begin(), parents_.end(), 0U);
    }

    std::uint32_t of(std::uint32_t vertex)
    {
        while (parents_[vertex] != vertex)
            vertex = parents_[vertex] = parents_[parents_[vertex]]; // halves the way for the next
        return vertex;
    }

    void join(std::uint32_t one, std::uint32_t other)
    {
        const std::uint32_t first = of(one);
        const std::uint32_t second = of(other);
        parents_[std::max(first, second)] = std::min(first, second);
    }

private:
    std::vector<std::uint32_t> parents_;
};

Sets partsOf(const Mesh& mesh)
{
    Sets parts(mesh.vertices().size());
    for (const Triangle& triangle : mesh.triangles())
    {
        parts.join(triangle[0], triangle[1]);
        parts.join(triangle[1], triangle[2]);
    }
    return parts;
}

/// For each vertex, whether it is the earliest one of a part that is kept.
std::vector<bool> keptParts(const Mesh& mesh, Sets& parts, std::size_t count)
{
    std::vector<std::uint32_t> sizes(mesh.vertices().size());
    for (const Triangle& triangle : mesh.triangles()) ++sizes[parts.of(triangle[0])];
    std::vector<std::uint32_t> largest;
    for (std::uint32_t vertex = 0; vertex < sizes.size(); ++vertex)
        if (sizes[vertex] > 0) largest.push_back(vertex);
    std::ranges::sort(largest, [&](std::uint32_t one, std::uint32_t other) {
        return sizes[one] != sizes[other] ? sizes[one] > sizes[other] : one < other;
    });
    largest.resize(std::min(count, largest.size()));
    std::vector<bool> isKept(sizes.size(), false);
    for (const std::uint32_t vertex : largest) isKept[vertex] = true;
    return isKept;
}

} // namespace

Mesh largestParts(const Mesh& mesh, int count)
{
    if (count < 0) throw Maps::MapError("the number of parts to keep is negative");
    if (count == 0 || mesh.isEmpty()) return mesh;

    Sets parts = partsOf(mesh);
    const std::vector<bool> isKept = keptParts(mesh, parts, static_cast<std::size_t>(count));
    Triangles result;
    std::vector<std::uint32_t> numbers(mesh.vertices().size());
    for (std::uint32_t vertex = 0; vertex < numbers.size(); ++vertex)
    {
        if (!isKept[parts.of(vertex)]) continue;
        numbers[vertex] = static_cast<std::uint32_t>(result.vertices.size());
        result.vertices.push_back(mesh.vertices()[vertex]);
    }
    for (const Triangle& triangle : mesh.triangles())
        if (isKept[parts.of(triangle[0])])
            result.triangles.push_back(
                {numbers[triangle[0]], numbers[triangle[1]], numbers[triangle[2]]});
    return Mesh(std::move(result));
}

} // namespace Volumes
