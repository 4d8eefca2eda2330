#include "NiftiFile.h"

#include <tests/fuzz/MemoryFile.h>

#include <cmath>
#include <filesystem>
#include <string>

namespace
{

/// A few bytes may unpack to a thousand times as many, which a volume then is.
constexpr std::size_t kMostCompressed = std::size_t{1} << 15U;

/// A name with the ending that a reader wants, for a file that has none.
class Link
{
public:
    Link(const std::string& target, const std::string& ending)
    {
        std::string folder = (std::filesystem::temp_directory_path() / "fuzz-XXXXXX").string();
        if (::mkdtemp(folder.data()) == nullptr) std::abort();
        folder_ = folder;
        path_ = folder_ / ("input" + ending);
        std::filesystem::create_symlink(target, path_);
    }
    ~Link() { std::filesystem::remove_all(folder_); }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path folder_;
    std::filesystem::path path_;
};

/// What is accepted is whole, and lies in space.
void check(const Volumes::Volume& volume)
{
    if (volume.isEmpty() || volume.samples().size() != Volumes::voxelCount(volume.counts()))
        std::abort();
    for (const float sample : volume.samples())
        if (!std::isfinite(sample)) std::abort();
    const Volumes::Vector end = volume.toWorld().place({static_cast<double>(volume.counts()[0]),
                                                        static_cast<double>(volume.counts()[1]),
                                                        static_cast<double>(volume.counts()[2])});
    for (const double number : {end.x, end.y, end.z})
        if (!std::isfinite(number)) std::abort();
}

void read(const std::filesystem::path& path)
{
    try
    {
        check(Volumes::readNifti(path));
    }
    catch (const Volumes::MapError& error)
    {
        if (!std::string(error.what()).starts_with("'" + path.string() + "': ")) std::abort();
    }
}

} // namespace

/// Any bytes are read as a volume, compressed or not, or refused in one line that names the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string file = QuorlFuzz::pathOf(data, size);
    static const Link plain(file, ".nii");
    static const Link compressed(file, ".nii.gz");
    read(plain.path());
    if (size <= kMostCompressed) read(compressed.path());
    return 0;
}
