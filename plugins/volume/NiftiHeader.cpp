#include "NiftiHeader.h"

#include <nifti/nifti2_io.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <system_error>

namespace Volumes
{
namespace
{

constexpr std::uintmax_t kMostUnpackedFromOne =
    1032; // the bound of deflate, by zlib's technical notes

std::string lowered(std::string text)
{
    for (char& letter : text)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    return text;
}

std::uintmax_t sizeOfRegularFile(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        throw MapError::about(path, "no such file");
    if (error) throw MapError::about(path, error.message());
    if (!std::filesystem::is_regular_file(status))
        throw MapError::about(path, "is not a regular file");
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error) throw MapError::about(path, error.message());
    return size;
}

/// The fields of either version that are checked, before the library mends them in silence.
struct Raw
{
    std::array<std::int64_t, 8> dimensions{};
    std::array<double, 8> sizes{};
    int type = 0;
    double offset = 0.0;
    double slope = 0.0;
    double intercept = 0.0;
    int units = 0;
    bool isInOneFile = false;
};

template <class Header>
Raw rawOf(const Header& header)
{
    Raw raw;
    std::copy_n(header.dim, 8, raw.dimensions.begin());
    std::copy_n(header.pixdim, 8, raw.sizes.begin());
    raw.type = header.datatype;
    raw.offset = static_cast<double>(header.vox_offset);
    raw.slope = header.scl_slope;
    raw.intercept = header.scl_inter;
    raw.units = static_cast<unsigned char>(header.xyzt_units);
    raw.isInOneFile = header.magic[0] == 'n' && header.magic[1] == '+';
    return raw;
}

struct FreeImage
{
    void operator()(nifti_image* image) const { nifti_image_free(image); }
};

using Image = std::unique_ptr<nifti_image, FreeImage>;

/// A header of either version, read as its own byte order wants.
class Header
{
public:
    Header(std::span<const char> bytes, const std::filesystem::path& path)
        : path_(path), version_(versionOf(bytes))
    {
        if (version_ != 1 && version_ != 2) throw MapError::about(path, "it is no NIfTI file");
        if (version_ == 1)
            read(bytes, first_, path);
        else
            read(bytes, second_, path);
    }

    bool isSwapped() const { return isSwapped_; }
    Raw raw() const { return version_ == 1 ? rawOf(first_) : rawOf(second_); }

    /// The library's reading of it.
    Image image() const
    {
        Image image(version_ == 1 ? nifti_convert_n1hdr2nim(first_, nullptr)
                                  : nifti_convert_n2hdr2nim(second_, nullptr));
        if (!image) throw MapError::about(path_, "the NIfTI library refuses its header");
        return image;
    }

private:
    /// The first call to the library, which from then on leaves standard error alone: what is wrong
    /// is told by exceptions.
    static int versionOf(std::span<const char> bytes)
    {
        nifti_set_debug_level(0);
        return bytes.empty() ? -1 : nifti_header_version(bytes.data(), bytes.size());
    }

    template <class Fields>
    void read(std::span<const char> bytes, Fields& fields, const std::filesystem::path& path)
    {
        if (bytes.size() < sizeof fields)
            throw MapError::about(path, "truncated: it ends within the header");
        std::memcpy(&fields, bytes.data(), sizeof fields);
        isSwapped_ = fields.sizeof_hdr != static_cast<int>(sizeof fields);
        if (isSwapped_) swap_nifti_header(&fields, version_);
    }

    const std::filesystem::path& path_;
    const int version_;
    bool isSwapped_ = false;
    nifti_1_header first_{};
    nifti_2_header second_{};
};

/// Holds what a header claims against what can be true.
class Check
{
public:
    Check(const Raw& raw, const std::filesystem::path& path) : raw_(raw), path_(path) {}

    Counts counts() const
    {
        const std::int64_t axes = raw_.dimensions[0];
        if (axes < 1 || axes > 7) fail("its header tells of " + std::to_string(axes) + " axes");
        Counts counts{1, 1, 1};
        for (std::size_t axis = 1; axis <= static_cast<std::size_t>(axes); ++axis)
        {
            const std::int64_t count = raw_.dimensions[axis];
            if (axis > 3 && count > 1)
                fail("it holds " + std::to_string(count) + " volumes, where one is wanted");
            if (count < 1 || count > static_cast<std::int64_t>(kMostVoxels))
                fail("its header tells of " + std::to_string(count) + " voxels along an axis");
            if (axis <= 3) counts[axis - 1] = static_cast<int>(count);
        }
        return counts;
    }

    int bytesPerVoxel() const
    {
        for (const int known : {DT_INT8, DT_UINT8, DT_INT16, DT_UINT16, DT_INT32, DT_UINT32,
                                DT_INT64, DT_UINT64, DT_FLOAT32, DT_FLOAT64})
            if (raw_.type == known)
            {
                int bytes = 0;
                int ignored = 0;
                nifti_datatype_sizes(raw_.type, &bytes, &ignored);
                return bytes;
            }
        fail("its voxels are of a type that cannot be shown as numbers, " +
             std::to_string(raw_.type));
    }

    std::int64_t offset(std::uintmax_t mostBytes) const
    {
        const double least = kLeastOffset;
        if (!(raw_.offset >= least && raw_.offset <= static_cast<double>(mostBytes)))
            fail("its header has the voxels begin outside the file");
        return static_cast<std::int64_t>(raw_.offset);
    }

    /// The products of what `counts` has let pass cannot overflow one at a time.
    void room(const Counts& counts, int bytesPerVoxel, std::int64_t offset,
              std::uintmax_t mostBytes) const
    {
        std::uintmax_t voxels = 1;
        for (const int count : counts)
        {
            voxels *= static_cast<std::uintmax_t>(count);
            if (voxels > kMostVoxels)
                fail("it has more than " + std::to_string(kMostVoxels) + " voxels");
        }
        const std::uintmax_t wanted = voxels * static_cast<std::uintmax_t>(bytesPerVoxel);
        if (wanted > mostBytes - static_cast<std::uintmax_t>(offset))
            fail("truncated: " + std::to_string(counts[0]) + " x " + std::to_string(counts[1]) +
                 " x " + std::to_string(counts[2]) + " voxels take " + std::to_string(wanted) +
                 " bytes, which are not in the file");
    }

    /// \return millimetres in the unit of the file.
    double millimetres() const
    {
        switch (XYZT_TO_SPACE(raw_.units))
        {
            case NIFTI_UNITS_METER: return 1000.0;
            case NIFTI_UNITS_MICRON: return 0.001;
            default: return 1.0;
        }
    }

    /// Where no sform says it better, the sizes of the voxels are what the rest is built on.
    void sizes() const
    {
        for (std::size_t axis = 1; axis <= 3; ++axis)
            if (!(raw_.sizes[axis] > 0.0 && std::isfinite(raw_.sizes[axis])))
                fail("its voxels have no size along axis " + std::to_string(axis));
    }

    [[noreturn]] void fail(const std::string& reason) const
    {
        throw MapError::about(path_, reason);
    }

private:
    static constexpr double kLeastOffset = 348.0; // the shorter header

    const Raw& raw_;
    const std::filesystem::path& path_;
};

Affine affineOf(const nifti_dmat44& matrix, double scale)
{
    const auto column = [&](int number) {
        return Vector{scale * matrix.m[0][number], scale * matrix.m[1][number],
                      scale * matrix.m[2][number]};
    };
    return {column(0), column(1), column(2), column(3)};
}

/// Whether all voxels are where single precision still tells them apart.
bool isWithinReach(const Affine& affine, const Counts& counts)
{
    constexpr double kFarthest = 1e6; // millimetres
    return length(affine.origin) + counts[0] * length(affine.x) + counts[1] * length(affine.y) +
               counts[2] * length(affine.z) <=
           kFarthest;
}

Affine toWorld(const nifti_image& image, const Counts& counts, const Check& check)
{
    const bool hasForm = image.sform_code > 0;
    if (!hasForm) check.sizes();
    const Affine affine = affineOf(hasForm ? image.sto_xyz : image.qto_xyz, check.millimetres());
    if (!affine.isInvertible()) check.fail("its voxels have no size in space");
    if (!isWithinReach(affine, counts)) check.fail("its voxels are more than a kilometre away");
    return affine;
}

} // namespace

NiftiFileKind checkNiftiFile(const std::filesystem::path& path)
{
    const std::uintmax_t size = sizeOfRegularFile(path);
    const std::string name = lowered(path.filename().string());
    if (name.ends_with(".nii")) return {false, size};
    if (name.ends_with(".nii.gz")) return {true, size * kMostUnpackedFromOne};
    throw MapError::about(path, "it does not end in .nii or .nii.gz");
}

NiftiHeader parseNiftiHeader(std::span<const char> bytes, std::uintmax_t mostBytes,
                             const std::filesystem::path& path)
{
    const Header header(bytes, path);
    const Raw raw = header.raw();
    const Check check(raw, path);
    if (!raw.isInOneFile)
        check.fail("it is the header of a NIfTI pair, whose voxels are elsewhere");

    NiftiHeader result;
    result.counts = check.counts();
    result.type = raw.type;
    result.bytesPerVoxel = check.bytesPerVoxel();
    result.isSwapped = header.isSwapped();
    result.offset = check.offset(mostBytes);
    check.room(result.counts, result.bytesPerVoxel, result.offset, mostBytes);
    result.toWorld = toWorld(*header.image(), result.counts, check);
    if (std::isfinite(raw.slope) && raw.slope != 0.0 && std::isfinite(raw.intercept))
    {
        result.slope = raw.slope;
        result.intercept = raw.intercept;
    }
    return result;
}

} // namespace Volumes
