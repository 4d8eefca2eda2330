#pragma once

#include "Volume.h"

#include <cstdint>
#include <filesystem>
#include <span>

namespace Volumes
{

/// What can be told of a NIfTI file before it is opened.
struct NiftiFileKind
{
    bool isCompressed = false;
    std::uintmax_t mostBytes = 0; ///< that there can be in it, unpacked
};

/// \throws MapError which names the path, unless it is a regular file that ends in ".nii" or
/// ".nii.gz".
NiftiFileKind checkNiftiFile(const std::filesystem::path& path);

/// The longer one of the two versions of headers.
inline constexpr std::size_t kNiftiHeaderBytes = 540;

/// What a header says that matters here, checked.
struct NiftiHeader
{
    Counts counts{};
    Affine toWorld; ///< from voxels to millimetres, RAS
    int type = 0;   ///< DT_INT8 and so on
    int bytesPerVoxel = 0;
    bool isSwapped = false;  ///< whether voxels are of the other byte order
    std::int64_t offset = 0; ///< of the first voxel in the file
    double slope = 1.0;      ///< value = slope x voxel + intercept
    double intercept = 0.0;
};

/// \param bytes the first ones of the file, kNiftiHeaderBytes or all that there are
/// \param mostBytes that the file can have
/// \throws MapError which names the path and what is wrong with the header.
NiftiHeader parseNiftiHeader(std::span<const char> bytes, std::uintmax_t mostBytes,
                             const std::filesystem::path& path);

} // namespace Volumes
