#include "MeshFile.h"

#include <plugins/grid/MapError.h>
#include <plugins/picture/NewFile.h>

#include <bit>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>

namespace Volumes
{
namespace
{

void checkSurface(const Mesh& mesh, const std::filesystem::path& path)
{
    if (mesh.isEmpty()) throw Maps::MapError::about(path, "cannot be written: there is no surface");
}

/// Numbers, little end first, whatever the machine is.
class LittleEndian
{
public:
    explicit LittleEndian(Maps::NewFile& file) : file_(file) {}

    void put(std::uint32_t word)
    {
        std::array<char, 4> bytes{};
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<char>(static_cast<unsigned char>(word >> (8U * i)));
        file_.write({bytes.data(), bytes.size()});
    }
    void put(const std::array<float, 3>& numbers)
    {
        for (const float number : numbers) put(std::bit_cast<std::uint32_t>(number));
    }

private:
    Maps::NewFile& file_;
};

std::string plyHeader(const Mesh& mesh)
{
    std::string text =
        "ply\nformat binary_little_endian 1.0\ncomment millimetres, x to the right of "
        "the person, y to the front, z upwards\nelement vertex " +
        std::to_string(mesh.vertices().size()) + "\n";
    for (const char* name : {"x", "y", "z", "nx", "ny", "nz"})
        text += std::string("property float ") + name + "\n";
    return text + "element face " + std::to_string(mesh.triangles().size()) +
           "\nproperty list uchar int vertex_indices\nend_header\n";
}

std::string objLine(const char* word, const std::array<float, 3>& numbers)
{
    std::string line = word;
    for (const float number : numbers)
    {
        std::array<char, 32> digits{};
        const auto [end, error] =
            std::to_chars(digits.data(), digits.data() + digits.size(), number);
        line.append(1, ' ').append(digits.data(), end);
    }
    return line + "\n";
}

/// Vertices and normals of one number belong together, and both count from 1.
std::string objFace(const Triangle& triangle)
{
    std::string line = "f";
    for (const std::uint32_t vertex : triangle)
    {
        const std::string number = std::to_string(std::uint64_t{vertex} + 1);
        line.append(1, ' ').append(number).append("//").append(number);
    }
    return line + "\n";
}

} // namespace

void writePly(const Mesh& mesh, const std::filesystem::path& path)
{
    checkSurface(mesh, path);
    Maps::NewFile file(path);
    file.write(plyHeader(mesh));
    LittleEndian numbers(file);
    for (const Vertex& vertex : mesh.vertices())
    {
        numbers.put(vertex.place);
        numbers.put(vertex.normal);
    }
    for (const Triangle& triangle : mesh.triangles())
    {
        file.write("\x03");
        for (const std::uint32_t vertex : triangle) numbers.put(vertex);
    }
    file.takeThePlaceOfTheTarget();
}

void writeObj(const Mesh& mesh, const std::filesystem::path& path)
{
    checkSurface(mesh, path);
    Maps::NewFile file(path);
    file.write("# millimetres, x to the right of the person, y to the front, z upwards\n");
    for (const Vertex& vertex : mesh.vertices()) file.write(objLine("v", vertex.place));
    for (const Vertex& vertex : mesh.vertices()) file.write(objLine("vn", vertex.normal));
    for (const Triangle& triangle : mesh.triangles()) file.write(objFace(triangle));
    file.takeThePlaceOfTheTarget();
}

} // namespace Volumes
