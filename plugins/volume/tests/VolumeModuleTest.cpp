#include <plugins/volume/tests/NiftiParts.h>
#include <quorl/kit/Network.h>
#include <quorl/modules/VModules.h>
#include <quorl/modules/ZelmSaver.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValuePool.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <fstream>
#include <string>

/// The shipped module as a host sees it, which knows nothing of its classes.
namespace
{

using Quorl::RefPtr;
using Quorl::ValuePool;
using Quorl::VObject;

struct VolumeModule : testing::Test
{
    static void SetUpTestSuite() { Quorl::openModules(SHIPPED_MODULES); }

    ~VolumeModule() override
    {
        for (const RefPtr<VObject>& object : made) object->remove();
    }

    RefPtr<VObject> make(const std::string& key)
    {
        RefPtr<VObject> object = Quorl::findCreator(key)->create("", {});
        made.push_back(object);
        return object;
    }

    RefPtr<VObject> makeBehind(const RefPtr<VObject>& parent, const std::string& output,
                               const std::string& key, const std::string& input)
    {
        RefPtr<VObject> object = make(key);
        object->attach(input, *parent, output);
        return object;
    }

    /// A reader of a file with a cube of 2 x 3 x 4 voxels, some above 12, some below.
    RefPtr<VObject> makeReader()
    {
        const std::string file = (folder / "counted.nii").string();
        std::ofstream(file, std::ios::binary) << Volumes::NiftiParts().bytes();
        RefPtr<VObject> reader = make("Volume/Reader");
        Quorl::setText(*reader, "file", file);
        return reader;
    }

    void run(const RefPtr<VObject>& object) const
    {
        Quorl::VRequest request(pool, false);
        EXPECT_TRUE(object->init_request(request, 1.0));
    }

    std::string outputOf(const RefPtr<VObject>& object, const std::string& output) const
    {
        return object->getOutput(output)->getValueBase(pool)->Text();
    }

    QuorlTest::TemporaryFolder folder;
    const RefPtr<ValuePool> pool{new ValuePool};
    std::vector<RefPtr<VObject>> made;
};

TEST_F(VolumeModule, LeadsFromAFileToAPicture)
{
    const auto reader = makeReader();
    const auto kept = makeBehind(reader, "volume", "Volume/Threshold", "volume");
    const auto smoothed = makeBehind(kept, "kept", "Volume/Smoothing", "volume");
    const auto surface = makeBehind(smoothed, "smoothed", "Volume/Isosurface", "volume");
    const auto rendering = makeBehind(surface, "surface", "Volume/Rendering", "surface");
    const auto annotation = makeBehind(rendering, "picture", "Picture/Annotation", "picture");
    ASSERT_TRUE(Quorl::setText(*surface, "level", "11.5", pool));
    ASSERT_TRUE(Quorl::setText(*rendering, "colour", "#80a0c0", pool));
    ASSERT_TRUE(Quorl::setText(*annotation, "file", (folder / "a.ppm").string(), pool));

    run(annotation);

    EXPECT_EQ(outputOf(reader, "volume"), "volume of 2 x 3 x 4");
    EXPECT_NE(outputOf(surface, "surface"), "mesh of 0 triangles");
    EXPECT_EQ(outputOf(rendering, "picture"), "image of 900 x 900");
    EXPECT_EQ(QuorlTest::bytesOf(folder / "a.ppm").substr(0, 3), "P6\n");
}

TEST_F(VolumeModule, SavesTheSurfaceThatWasFoundLast)
{
    const auto surface = makeBehind(makeReader(), "volume", "Volume/Isosurface", "volume");
    const std::string file = (folder / "a.ply").string();
    EXPECT_FALSE(surface->getSaverByExt(".ply")->Save(file)) << "nothing was found yet";

    Quorl::setText(*surface, "level", "11.5", pool);
    run(surface);

    EXPECT_TRUE(surface->getSaverByExt(".ply")->Save(file));
    EXPECT_EQ(QuorlTest::bytesOf(file).substr(0, 4), "ply\n");
    EXPECT_TRUE(surface->getSaverByExt(".obj")->Save((folder / "a.obj").string()));
    EXPECT_FALSE(surface->getSaverByExt(".obj")->Save((folder / "missing/a.obj").string()));
}

TEST_F(VolumeModule, SavesPicturesAsPngAndPpm)
{
    const auto slice = makeBehind(makeReader(), "volume", "Volume/Slice", "volume");
    const auto annotation = makeBehind(slice, "picture", "Picture/Annotation", "picture");
    ASSERT_TRUE(Quorl::setText(*slice, "axis", "x", pool));
    ASSERT_TRUE(Quorl::setText(*slice, "position", "-9.5", pool));

    run(annotation);

    EXPECT_EQ(outputOf(slice, "values"), "raster of 5 x 10");
    for (const char* suffix : {".png", ".ppm"})
        EXPECT_TRUE(annotation->getSaverByExt(suffix)->Save((folder / "a").string() + suffix));
    EXPECT_EQ(QuorlTest::bytesOf(folder / "a.ppm").substr(0, 3), "P6\n");
}

TEST_F(VolumeModule, TakesAWordForAnAxisAndNothingElse)
{
    const auto slice = make("Volume/Slice");

    EXPECT_TRUE(Quorl::setText(*slice, "axis", "y"));
    EXPECT_FALSE(Quorl::setText(*slice, "axis", "w"));
    EXPECT_EQ(slice->getParameter("axis")->getValueAsText({}, "", false), "y");
}

TEST_F(VolumeModule, TellsWhatIsWrongWithAFileAndKeepsWhatItHad)
{
    const auto reader = makeReader();
    run(reader);
    Quorl::setText(*reader, "file", (folder / "missing.nii").string());

    Quorl::VRequest request(pool, false);
    try
    {
        reader->init_request(request, 1.0);
        ADD_FAILURE() << "nothing was thrown";
    }
    catch (const std::exception& error)
    {
        EXPECT_EQ(error.what(), "'" + (folder / "missing.nii").string() + "': no such file");
    }
    EXPECT_EQ(outputOf(reader, "volume"), "volume of 2 x 3 x 4");
}

} // namespace
