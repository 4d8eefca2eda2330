#include "NiftiFile.h"

#include "NiftiHeader.h"

#include <nifti/nifti2_io.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

namespace Volumes
{
namespace
{

/// The bytes of a file, unpacked where it is compressed.
class Bytes
{
public:
    Bytes(const std::filesystem::path& path, bool isCompressed)
        : path_(path), file_(znzopen(path.c_str(), "rb", isCompressed ? 1 : 0))
    {
        if (!file_) throw MapError::about(path_, "it cannot be opened");
    }
    ~Bytes() { Xznzclose(&file_); }
    Bytes(const Bytes&) = delete;
    Bytes& operator=(const Bytes&) = delete;

    /// Fills `target` as far as the file goes. \return the number of bytes.
    std::size_t read(std::span<char> target)
    {
        const std::size_t count = znzread(target.data(), 1, target.size(), file_);
        if (count > target.size()) throw MapError::about(path_, "its compressed data are damaged");
        return count;
    }

    void seek(std::int64_t offset)
    {
        if (znzseek(file_, offset, SEEK_SET) <
            0) // plain files answer 0, compressed ones the offset
            throw MapError::about(path_, "it ends before its voxels");
    }

private:
    const std::filesystem::path& path_;
    znzFile file_;
};

/// Voxels as a file has them, and as a volume does.
class Decoder
{
public:
    Decoder(const std::filesystem::path& path, const NiftiHeader& header)
        : path_(path), header_(header)
    {
    }

    /// Appends voxels, whose bytes are brought into the order of this machine on the way.
    void append(std::span<char> bytes, std::vector<float>& samples) const
    {
        const auto count = static_cast<std::int64_t>(bytes.size()) / header_.bytesPerVoxel;
        if (header_.isSwapped && header_.bytesPerVoxel > 1)
            nifti_swap_Nbytes(count, header_.bytesPerVoxel, bytes.data());
        switch (header_.type)
        {
            case DT_INT8: return appendAs<std::int8_t>(bytes, samples);
            case DT_UINT8: return appendAs<std::uint8_t>(bytes, samples);
            case DT_INT16: return appendAs<std::int16_t>(bytes, samples);
            case DT_UINT16: return appendAs<std::uint16_t>(bytes, samples);
            case DT_INT32: return appendAs<std::int32_t>(bytes, samples);
            case DT_UINT32: return appendAs<std::uint32_t>(bytes, samples);
            case DT_INT64: return appendAs<std::int64_t>(bytes, samples);
            case DT_UINT64: return appendAs<std::uint64_t>(bytes, samples);
            case DT_FLOAT32: return appendAs<float>(bytes, samples);
            default: return appendAs<double>(bytes, samples);
        }
    }

private:
    template <class Number>
    void appendAs(std::span<const char> bytes, std::vector<float>& samples) const
    {
        for (std::size_t at = 0; at < bytes.size(); at += sizeof(Number))
        {
            Number number{};
            std::memcpy(&number, bytes.data() + at, sizeof number);
            const auto value =
                static_cast<float>(header_.slope * static_cast<double>(number) + header_.intercept);
            if (!std::isfinite(value)) refuse(samples.size());
            samples.push_back(value);
        }
    }

    [[noreturn]] void refuse(std::size_t voxel) const
    {
        const auto columns = static_cast<std::size_t>(header_.counts[0]);
        const auto rows = static_cast<std::size_t>(header_.counts[1]);
        throw MapError::about(path_, "voxel " + std::to_string(voxel % columns) + ", " +
                                         std::to_string(voxel / columns % rows) + ", " +
                                         std::to_string(voxel / columns / rows) +
                                         " is not a finite number");
    }

    const std::filesystem::path& path_;
    const NiftiHeader& header_;
};

/// A slice at a time, so that all the bytes and all the samples are never there together.
std::vector<float> readVoxels(Bytes& file, const NiftiHeader& header,
                              const std::filesystem::path& path)
{
    const Decoder decoder(path, header);
    const std::size_t perSlice = voxelCount({header.counts[0], header.counts[1], 1});
    std::vector<char> slice(perSlice * static_cast<std::size_t>(header.bytesPerVoxel));
    std::vector<float> samples;
    samples.reserve(voxelCount(header.counts));
    file.seek(header.offset);
    for (int k = 0; k < header.counts[2]; ++k)
    {
        if (file.read(slice) != slice.size())
            throw MapError::about(path, "truncated: its voxels end in slice " + std::to_string(k) +
                                            " of " + std::to_string(header.counts[2]));
        decoder.append(slice, samples);
    }
    return samples;
}

/// The check sum stands behind the last voxel; to read on is to have it compared.
void readOnBehindVoxels(Bytes& file)
{
    char next = 0;
    file.read({&next, 1});
}

} // namespace

Volume readNifti(const std::filesystem::path& path)
{
    const NiftiFileKind kind = checkNiftiFile(path);
    Bytes file(path, kind.isCompressed);
    std::vector<char> head(kNiftiHeaderBytes);
    head.resize(file.read(head));
    const NiftiHeader header = parseNiftiHeader(head, kind.mostBytes, path);
    std::vector<float> samples = readVoxels(file, header, path);
    readOnBehindVoxels(file);
    return {header.counts, header.toWorld, std::move(samples)};
}

} // namespace Volumes
