#pragma once

#include "Volume.h"

#include <filesystem>

namespace Volumes
{

/// Reads a volume from a NIfTI file, version 1 or 2, header and voxels in one (".nii"), compressed
/// or not (".nii.gz"), of either byte order, through the NIfTI library
/// (https://nifti.nimh.nih.gov/nifti-1).
///
/// Where the voxels are comes from the header: its sform if it has one, else its qform, else the
/// sizes of the voxels alone. Metres and micrometres become millimetres; a file that tells no unit
/// has millimetres. Values are scaled as the header says, and become single precision numbers.
///
/// Nothing is taken on trust: the dimensions are held against the size of the file before memory is
/// asked for (deflate packs at most 1032 bytes into one), there is room for kMostVoxels at the
/// most, all voxels must be there, and each must be finite. Volumes over time, and voxels of
/// colours and complex numbers, are refused. What stands behind the voxels, and extensions of the
/// header, are passed over.
/// \throws MapError which names the path and what is wrong with it.
Volume readNifti(const std::filesystem::path& path);

} // namespace Volumes
