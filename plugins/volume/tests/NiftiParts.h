#pragma once

#include <nifti/nifti1.h>
#include <nifti/nifti2.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace Volumes
{

/// The parts of a NIfTI file, good ones unless a test changes them: 2 x 3 x 4 voxels of 1, 2 and 3
/// millimetres, from 0 to 23.
struct NiftiParts
{
    NiftiParts()
    {
        header.sizeof_hdr = 348;
        header.dim[0] = 3;
        for (std::size_t axis = 4; axis < 8; ++axis) header.dim[axis] = 1;
        for (std::size_t axis = 0; axis < 8; ++axis) header.pixdim[axis] = 1.0F;
        for (std::size_t axis = 1; axis < 4; ++axis)
        {
            header.dim[axis] = static_cast<short>(axis + 1);
            header.pixdim[axis] = static_cast<float>(axis);
        }
        header.datatype = 16;
        header.vox_offset = 352.0F;
        header.xyzt_units = 2;
        header.sform_code = 1;
        std::ranges::copy(std::array{1.0F, 0.0F, 0.0F, -10.0F}, header.srow_x);
        std::ranges::copy(std::array{0.0F, 2.0F, 0.0F, -20.0F}, header.srow_y);
        std::ranges::copy(std::array{0.0F, 0.0F, 3.0F, -30.0F}, header.srow_z);
        std::copy_n("n+1", 4, header.magic);
        for (int i = 0; i < 24; ++i) voxels.push_back(static_cast<float>(i));
    }

    std::string headerBytes() const
    {
        nifti_1_header stored = header;
        if (isSwapped) swap(stored);
        return {reinterpret_cast<const char*>(&stored), sizeof stored};
    }

    std::string bytes() const
    {
        std::string result = headerBytes();
        if (header.vox_offset > 348.0F) result.resize(static_cast<std::size_t>(header.vox_offset));
        return result + voxelBytes();
    }

    /// The same with the longer header, in the byte order of this machine.
    std::string bytesOfSecondVersion() const
    {
        nifti_2_header second{};
        second.sizeof_hdr = 540;
        std::memcpy(second.magic, "n+2\0\r\n\032\n", 8);
        second.datatype = header.datatype;
        std::copy_n(header.dim, 8, second.dim);
        std::copy_n(header.pixdim, 8, second.pixdim);
        second.vox_offset = 544;
        second.xyzt_units = header.xyzt_units;
        second.sform_code = header.sform_code;
        std::copy_n(header.srow_x, 4, second.srow_x);
        std::copy_n(header.srow_y, 4, second.srow_y);
        std::copy_n(header.srow_z, 4, second.srow_z);
        std::string result(reinterpret_cast<const char*>(&second), sizeof second);
        result.resize(544);
        return result + voxelBytes();
    }

    nifti_1_header header{};
    std::vector<float> voxels;
    bool isSwapped = false; ///< of the other byte order than this machine

private:
    template <class Number>
    static void reverse(Number& number)
    {
        char* const bytes = reinterpret_cast<char*>(&number);
        std::reverse(bytes, bytes + sizeof number);
    }

    /// The fields that are set here.
    static void swap(nifti_1_header& stored)
    {
        reverse(stored.sizeof_hdr);
        for (short& count : stored.dim) reverse(count);
        for (float& size : stored.pixdim) reverse(size);
        reverse(stored.datatype);
        for (float* const number : {&stored.vox_offset, &stored.scl_slope, &stored.scl_inter,
                                    &stored.quatern_b, &stored.quatern_c, &stored.quatern_d,
                                    &stored.qoffset_x, &stored.qoffset_y, &stored.qoffset_z})
            reverse(*number);
        reverse(stored.qform_code);
        reverse(stored.sform_code);
        for (float(*row)[4] : {&stored.srow_x, &stored.srow_y, &stored.srow_z})
            for (float& number : *row) reverse(number);
    }

    std::string voxelBytes() const
    {
        std::string result;
        for (const float voxel : voxels) switch (header.datatype)
            {
                case 2: append<std::uint8_t>(result, voxel); break;
                case 4: append<std::int16_t>(result, voxel); break;
                case 8: append<std::int32_t>(result, voxel); break;
                case 64: append<double>(result, voxel); break;
                case 256: append<std::int8_t>(result, voxel); break;
                case 512: append<std::uint16_t>(result, voxel); break;
                case 768: append<std::uint32_t>(result, voxel); break;
                case 1024: append<std::int64_t>(result, voxel); break;
                case 1280: append<std::uint64_t>(result, voxel); break;
                default: append<float>(result, voxel);
            }
        return result;
    }

    template <class Number>
    void append(std::string& bytes, float voxel) const
    {
        auto number = static_cast<Number>(voxel);
        if (isSwapped) reverse(number);
        bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
};

} // namespace Volumes
