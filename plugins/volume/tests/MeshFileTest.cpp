#include "MeshFile.h"
#include "Isosurface.h"
#include <plugins/volume/tests/Support.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <bit>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace Volumes
{
namespace
{

Mesh ball()
{
    const Counts counts{9, 9, 9};
    return isosurface(volumeOf(counts, centred(counts, 1.0), ballAround({0.1, 0.2, 0.3})), -2.7);
}

template <class Word>
Word taken(std::istream& file)
{
    std::array<char, sizeof(Word)> bytes{};
    file.read(bytes.data(), bytes.size());
    return std::bit_cast<Word>(bytes);
}

/// Reads what `writePly` writes, on a little-endian machine.
Mesh readPly(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::size_t vertices = 0;
    std::size_t faces = 0;
    for (std::string line; std::getline(file, line) && line != "end_header";)
    {
        std::sscanf(line.c_str(), "element vertex %zu", &vertices);
        std::sscanf(line.c_str(), "element face %zu", &faces);
    }
    Triangles surface;
    for (std::size_t i = 0; i < vertices; ++i)
        surface.vertices.push_back(
            {taken<std::array<float, 3>>(file), taken<std::array<float, 3>>(file)});
    for (std::size_t i = 0; i < faces; ++i)
    {
        EXPECT_EQ(file.get(), 3);
        surface.triangles.push_back(taken<Triangle>(file));
    }
    EXPECT_TRUE(file);
    EXPECT_EQ(file.peek(), std::char_traits<char>::eof());
    return Mesh(std::move(surface));
}

Mesh readObj(const std::filesystem::path& path)
{
    std::ifstream file(path);
    Triangles surface;
    std::size_t normals = 0;
    for (std::string line; std::getline(file, line);)
    {
        std::istringstream words(line);
        std::string word;
        std::array<float, 3> numbers{};
        words >> word;
        if (word == "f")
        {
            Triangle triangle{};
            std::array<unsigned, 3> normal{};
            std::sscanf(line.c_str(), "f %u//%u %u//%u %u//%u", &triangle[0], &normal[0],
                        &triangle[1], &normal[1], &triangle[2], &normal[2]);
            EXPECT_EQ(triangle, (Triangle{normal[0], normal[1], normal[2]}));
            for (std::uint32_t& vertex : triangle) --vertex;
            surface.triangles.push_back(triangle);
        }
        if (word == "v" || word == "vn") words >> numbers[0] >> numbers[1] >> numbers[2];
        if (word == "v") surface.vertices.push_back({numbers, {}});
        if (word == "vn") surface.vertices.at(normals++).normal = numbers;
    }
    return Mesh(std::move(surface));
}

TEST(MeshFile, GivesBackTheMeshThatItWroteAsPly)
{
    const QuorlTest::TemporaryFolder folder;

    writePly(ball(), folder / "ball.ply");

    EXPECT_EQ(readPly(folder / "ball.ply"), ball());
    EXPECT_EQ(folder.count(), 1U);
}

TEST(MeshFile, GivesBackTheMeshThatItWroteAsObj)
{
    const QuorlTest::TemporaryFolder folder;

    writeObj(ball(), folder / "ball.obj");

    EXPECT_EQ(readObj(folder / "ball.obj"), ball());
}

TEST(MeshFile, LeavesWhatWasThereIfItCannotWrite)
{
    const QuorlTest::TemporaryFolder folder;
    const std::filesystem::path path = folder / "ball.ply";
    std::ofstream(path) << "former";

    EXPECT_EQ(errorOf([&] { writePly(Mesh(), path); }),
              "'" + path.string() + "': cannot be written: there is no surface");
    EXPECT_EQ(errorOf([&] { writeObj(ball(), folder / "missing/ball.obj"); }),
              "'" + (folder / "missing/ball.obj").string() +
                  "': cannot be written: No such file or directory");

    EXPECT_EQ(QuorlTest::bytesOf(path), "former");
    EXPECT_EQ(folder.count(), 1U);
}

} // namespace
} // namespace Volumes
