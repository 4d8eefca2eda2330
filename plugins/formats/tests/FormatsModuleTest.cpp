#include <quorl/modules/VLoader.h>
#include <quorl/modules/VModules.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValuePool.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <fstream>

/// The shipped modules as a host sees them: by names, and through the loader.
namespace
{

using Quorl::RefPtr;
using Quorl::VLoader;

struct FormatsModule : testing::Test
{
    static void SetUpTestSuite() { ASSERT_EQ(Quorl::openModules(SHIPPED_MODULES), 6); }

    std::string write(const std::string& name, const std::string& text) const
    {
        std::ofstream(folder / name) << text;
        return (folder / name).string();
    }

    QuorlTest::TemporaryFolder folder;
    VLoader::LoadSuccess success;
};

TEST_F(FormatsModule, MakesAReaderOfAGridFile)
{
    const std::string file = write("small.asc", "ncols 3\nnrows 2\nxllcorner 10\nyllcorner -1\n"
                                                "cellsize 2\n1 2 3\n4 5 6\n");
    const RefPtr<Quorl::VObject> reader = VLoader::Load(success, file, "heights");

    ASSERT_TRUE(reader) << success.reason;
    EXPECT_EQ(reader->getName(), "heights");
    EXPECT_EQ(reader->CreatorName(), "Grid/Reader");
    EXPECT_EQ(reader->getParameter("file")->getValueAsText({}, "", false), file);
    const RefPtr<Quorl::ValuePool> pool(new Quorl::ValuePool);
    Quorl::VRequest request(pool, false);
    EXPECT_TRUE(reader->init_request(request, 1.0));
    EXPECT_EQ(reader->getOutput("grid")->getValueBase(pool)->Text(), "grid of 3 x 2");
    reader->remove();
}

TEST_F(FormatsModule, TellsWhatIsWrongWithAFileAtOnce)
{
    const std::string file = write("broken.asc", "ncols many\n");
    EXPECT_FALSE(VLoader::Load(success, file, "").referer);
    EXPECT_EQ(success.loader, "grid files");
    EXPECT_EQ(success.file, file);
    EXPECT_EQ(success.reason, "'" + file + "': ncols is no number: many");
}

TEST_F(FormatsModule, LeavesOtherFilesToOthers)
{
    EXPECT_FALSE(VLoader::Load(success, write("picture.png", "x"), "").referer);
    EXPECT_EQ(success.reason, "Unsupported file extension or format.");
}

TEST_F(FormatsModule, ProvidesItsCreatorsByName)
{
    for (const char* key :
         {"Grid/Reader",         "Grid/Region",         "Grid/Smoothing",    "Grid/Hillshade",
          "Grid/Contours",       "Grid/Arithmetic",     "Grid/Scaling",      "Grid/Statistics",
          "Grid/Profile",        "Picture/Colours",     "Picture/Writer",    "Picture/Annotation",
          "Picture/Composition", "Picture/ProfilePlot", "Volume/Reader",     "Volume/Slice",
          "Volume/Threshold",    "Volume/Smoothing",    "Volume/Isosurface", "Volume/Rendering"})
        EXPECT_TRUE(Quorl::VManagedObject::find(typeid(Quorl::VInputCreatorBase), key)) << key;
}

} // namespace
