#include "NiftiFile.h"
#include "Isosurface.h"
#include <plugins/volume/tests/NiftiParts.h>
#include <plugins/volume/tests/Support.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <zlib.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>

namespace Volumes
{
namespace
{

class NiftiFile : public testing::Test
{
protected:
    std::filesystem::path write(const std::string& bytes) const
    {
        std::ofstream(path_, std::ios::binary) << bytes;
        return path_;
    }

    std::filesystem::path writeCompressed(const std::string& bytes) const
    {
        const std::filesystem::path path = folder_ / "volume.nii.gz";
        const gzFile file = gzopen(path.c_str(), "wb");
        gzwrite(file, bytes.data(), static_cast<unsigned>(bytes.size()));
        gzclose(file);
        return path;
    }

    /// What reading a file complains of, after its name.
    static std::string complaintOf(const std::filesystem::path& path)
    {
        const std::string error = errorOf([&] { readNifti(path); });
        const std::string name = MapError::about(path, "").what();
        EXPECT_EQ(error.substr(0, name.size()), name);
        return error.empty() ? error : error.substr(name.size());
    }
    std::string complaint(const std::string& bytes) const { return complaintOf(write(bytes)); }

    const QuorlTest::TemporaryFolder folder_;
    const std::filesystem::path path_ = folder_ / "volume.nii";
};

std::vector<float> samplesOf(const Volume& volume)
{
    return {volume.samples().begin(), volume.samples().end()};
}

const std::vector<float> kCounted{0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11,
                                  12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23};

TEST_F(NiftiFile, ReadsVoxelsAndTheirPlaces)
{
    const Volume volume = readNifti(write(NiftiParts().bytes()));

    EXPECT_EQ(volume.counts(), (Counts{2, 3, 4}));
    EXPECT_EQ(samplesOf(volume), kCounted);
    EXPECT_EQ(volume.toWorld().place({0, 0, 0}), (Vector{-10.0, -20.0, -30.0}));
    EXPECT_EQ(volume.toWorld().place({1, 1, 1}), (Vector{-9.0, -18.0, -27.0}));
}

TEST_F(NiftiFile, ReadsCompressedFilesAndBothByteOrders)
{
    NiftiParts other;
    other.isSwapped = true;

    const Volume plain = readNifti(write(NiftiParts().bytes()));

    EXPECT_EQ(readNifti(writeCompressed(NiftiParts().bytes())), plain);
    EXPECT_EQ(readNifti(write(other.bytes())), plain);
    EXPECT_EQ(readNifti(writeCompressed(other.bytes())), plain);
}

TEST_F(NiftiFile, ReadsTheSecondVersion)
{
    EXPECT_EQ(readNifti(write(NiftiParts().bytesOfSecondVersion())),
              readNifti(writeCompressed(NiftiParts().bytes())));
}

TEST_F(NiftiFile, ReadsAllTypesOfNumbers)
{
    for (const int type : {2, 4, 8, 16, 64, 256, 512, 768, 1024, 1280})
        for (const bool isSwapped : {false, true})
        {
            NiftiParts parts;
            parts.header.datatype = static_cast<short>(type);
            parts.isSwapped = isSwapped;
            EXPECT_EQ(samplesOf(readNifti(write(parts.bytes()))), kCounted) << type;
        }
}

TEST_F(NiftiFile, ScalesValuesIfTheHeaderSaysHow)
{
    NiftiParts parts;
    parts.header.scl_slope = 0.5F;
    parts.header.scl_inter = -3.0F;
    EXPECT_EQ(readNifti(write(parts.bytes())).at(1, 0, 0), -2.5F);

    parts.header.scl_slope = 0.0F; // by the standard: not scaled
    EXPECT_EQ(readNifti(write(parts.bytes())).at(1, 0, 0), 1.0F);
}

TEST_F(NiftiFile, TakesPlacesFromTheQformWhereThereIsNoSform)
{
    NiftiParts parts;
    parts.header.sform_code = 0;
    parts.header.qform_code = 1;
    parts.header.quatern_d = 1.0F; // half a turn round z
    parts.header.qoffset_x = 5.0F;
    const Volume volume = readNifti(write(parts.bytes()));

    const Vector place = volume.toWorld().place({1.0, 1.0, 1.0});
    EXPECT_NEAR(place.x, 4.0, 1e-5);
    EXPECT_NEAR(place.y, -2.0, 1e-5);
    EXPECT_NEAR(place.z, 3.0, 1e-5);
}

TEST_F(NiftiFile, TakesSizesAloneWhereThereIsNoForm)
{
    NiftiParts parts;
    parts.header.sform_code = 0;

    EXPECT_EQ(readNifti(write(parts.bytes())).toWorld().place({1, 1, 1}), (Vector{1.0, 2.0, 3.0}));
}

TEST_F(NiftiFile, MakesMillimetresOfOtherUnits)
{
    NiftiParts parts;
    parts.header.xyzt_units = 3; // micrometres
    EXPECT_NEAR(readNifti(write(parts.bytes())).spacing().y, 0.002, 1e-9);

    parts.header.xyzt_units = 1; // metres
    EXPECT_NEAR(readNifti(write(parts.bytes())).spacing().y, 2000.0, 1e-3);
}

TEST_F(NiftiFile, HasTheSamePlacesWhicheverWayTheVoxelsAreStored)
{
    // The second file has its first axis reversed, in the voxels as in the sform.
    NiftiParts reversed;
    reversed.header.srow_x[0] = -1.0F;
    reversed.header.srow_x[3] = -9.0F;
    for (std::size_t i = 0; i < reversed.voxels.size(); i += 2)
        std::swap(reversed.voxels[i], reversed.voxels[i + 1]);
    const Volume plain = readNifti(write(NiftiParts().bytes()));
    const Volume turned = readNifti(write(reversed.bytes()));

    for (int k = 0; k < 4; ++k)
        for (int j = 0; j < 3; ++j)
            for (int i = 0; i < 2; ++i)
            {
                const Vector world = plain.toWorld().place({i * 1.0, j * 1.0, k * 1.0});
                EXPECT_EQ(turned.between(turned.toWorld().inverse().place(world)),
                          plain.at(i, j, k));
            }
}

TEST_F(NiftiFile, TakesAFourthAxisOfOneVolumeButNotOfMore)
{
    NiftiParts parts;
    parts.header.dim[0] = 4;
    EXPECT_EQ(samplesOf(readNifti(write(parts.bytes()))), kCounted);

    parts.header.dim[4] = 2;
    EXPECT_EQ(complaint(parts.bytes()), "it holds 2 volumes, where one is wanted");
}

TEST_F(NiftiFile, PassesOverWhatStandsBetweenHeaderAndVoxels)
{
    NiftiParts parts;
    parts.header.vox_offset = 416.0F;
    EXPECT_EQ(samplesOf(readNifti(write(parts.bytes()))), kCounted);
}

TEST_F(NiftiFile, RefusesATruncatedFile)
{
    const std::string whole = NiftiParts().bytes();

    EXPECT_EQ(complaint(whole.substr(0, whole.size() - 1)),
              "truncated: 2 x 3 x 4 voxels take 96 bytes, which are not in the file");
    EXPECT_EQ(complaintOf(writeCompressed(whole.substr(0, whole.size() - 30))),
              "truncated: its voxels end in slice 2 of 4");
    EXPECT_EQ(complaint(whole.substr(0, 200)), "it is no NIfTI file");
    EXPECT_EQ(complaint(NiftiParts().bytesOfSecondVersion().substr(0, 400)),
              "truncated: it ends within the header");
}

TEST_F(NiftiFile, RefusesWhatIsDamagedByItsCheckSum)
{
    const std::filesystem::path path = writeCompressed(NiftiParts().bytes());
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(-8, std::ios::end); // the check sum
    file.put('?');
    file.close();

    EXPECT_EQ(complaintOf(path), "its compressed data are damaged");
}

TEST_F(NiftiFile, RefusesWhatIsNoNiftiFile)
{
    EXPECT_EQ(complaint(""), "it is no NIfTI file");
    EXPECT_EQ(complaint(std::string(1000, 'x')), "it is no NIfTI file");
    EXPECT_EQ(complaintOf(folder_ / "missing.nii"), "no such file");
    EXPECT_EQ(complaintOf(folder_.path()), "is not a regular file");
    std::ofstream(folder_ / "volume.img") << "x";
    EXPECT_EQ(complaintOf(folder_ / "volume.img"), "it does not end in .nii or .nii.gz");
    NiftiParts pair;
    std::copy_n("ni1", 4, pair.header.magic);
    EXPECT_EQ(complaint(pair.bytes()),
              "it is the header of a NIfTI pair, whose voxels are elsewhere");
}

TEST_F(NiftiFile, DoesNotWaitForAPipe)
{
    ASSERT_EQ(::mkfifo((folder_ / "pipe.nii").c_str(), 0600), 0);

    EXPECT_EQ(complaintOf(folder_ / "pipe.nii"), "is not a regular file");
}

TEST_F(NiftiFile, RefusesDimensionsThatLie)
{
    const auto complaintFor = [&](int axis, int count) {
        NiftiParts parts;
        parts.header.dim[axis] = static_cast<short>(count);
        return complaint(parts.bytes());
    };

    EXPECT_EQ(complaintFor(1, 32767),
              "truncated: 32767 x 3 x 4 voxels take 1572816 bytes, which are not in the file");
    EXPECT_EQ(complaintFor(2, 0), "its header tells of 0 voxels along an axis");
    EXPECT_EQ(complaintFor(3, -4), "its header tells of -4 voxels along an axis");
    EXPECT_EQ(complaintFor(0, 0), "its header tells of 0 axes");
}

TEST_F(NiftiFile, AsksForNoMemoryThatTheFileCannotFill)
{
    NiftiParts parts;
    for (const int axis : {1, 2, 3}) parts.header.dim[axis] = 32767;
    EXPECT_EQ(complaint(parts.bytes()), "it has more than 536870912 voxels");

    for (const int axis : {1, 2, 3}) parts.header.dim[axis] = 800;
    EXPECT_EQ(complaintOf(writeCompressed(parts.bytes())).substr(0, 48),
              "truncated: 800 x 800 x 800 voxels take 204800000");
}

TEST_F(NiftiFile, RefusesVoxelsThatBeginOutsideTheFile)
{
    for (const float offset : {0.0F, 1e9F, -1.0F, std::numeric_limits<float>::quiet_NaN()})
    {
        NiftiParts parts;
        const std::string bytes = parts.bytes();
        parts.header.vox_offset = offset;
        EXPECT_EQ(complaint(parts.headerBytes() + bytes.substr(348)),
                  "its header has the voxels begin outside the file");
    }
}

TEST_F(NiftiFile, RefusesVoxelsThatAreNoNumbers)
{
    for (const float bad :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()})
    {
        NiftiParts parts;
        parts.voxels[9] = bad;
        EXPECT_EQ(complaint(parts.bytes()), "voxel 1, 1, 1 is not a finite number");
    }
    NiftiParts coloured;
    coloured.header.datatype = 128;
    EXPECT_EQ(complaint(coloured.bytes()),
              "its voxels are of a type that cannot be shown as numbers, 128");
}

TEST_F(NiftiFile, RefusesVoxelsWithoutSize)
{
    NiftiParts flat;
    flat.header.srow_y[1] = 0.0F;
    EXPECT_EQ(complaint(flat.bytes()), "its voxels have no size in space");

    NiftiParts none;
    none.header.sform_code = 0;
    for (const float bad : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()})
    {
        none.header.pixdim[2] = bad;
        EXPECT_EQ(complaint(none.bytes()), "its voxels have no size along axis 2");
    }
}

TEST_F(NiftiFile, RefusesVoxelsThatAreTooFarAway)
{
    for (const float far : {2e6F, -3e38F})
    {
        NiftiParts parts;
        parts.header.srow_z[3] = far;
        EXPECT_EQ(complaint(parts.bytes()), "its voxels are more than a kilometre away");
    }
}

TEST(BrainFile, IsUprightAndInProportion)
{
    const std::filesystem::path path = "/usr/share/mricron/templates/ch2bet.nii.gz";
    if (!std::filesystem::exists(path)) GTEST_SKIP() << "the package mricron-data is missing";

    const Volume volume = readNifti(path);
    EXPECT_EQ(volume.counts(), (Counts{181, 217, 181}));
    EXPECT_EQ(volume.spacing(), (Vector{1.0, 1.0, 1.0}));

    // A brain is longest from front to back, and widest between the ears; its stem is below.
    const Mesh surface = isosurface(volume, 60.0);
    Vector low{1e9, 1e9, 1e9};
    Vector high = -1.0 * low;
    for (const Vertex& vertex : surface.vertices())
    {
        const Vector place = vectorOf(vertex.place);
        low = {std::min(low.x, place.x), std::min(low.y, place.y), std::min(low.z, place.z)};
        high = {std::max(high.x, place.x), std::max(high.y, place.y), std::max(high.z, place.z)};
    }
    EXPECT_NEAR(high.x - low.x, 140.0, 15.0);
    EXPECT_NEAR(high.y - low.y, 178.0, 15.0);
    EXPECT_NEAR(high.z, 80.0, 10.0);
}

} // namespace
} // namespace Volumes
