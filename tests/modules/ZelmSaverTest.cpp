#include <quorl/modules/ZelmSaver.h>
#include <tests/modules/TestSaver.h>
#include <tests/support/Node.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::TestSaver;
using QuorlTest::ticksOf;
using testing::ElementsAre;

TEST(ZelmSaver, IsAsOldAsTheClockUntilItSaves)
{
    const RefPtr<TestSaver> saver(new TestSaver("png"));

    EXPECT_EQ(*saver, Ageable::GlobalTime);
    EXPECT_EQ(saver->extension, "png");
    EXPECT_EQ(saver->lastFile, "");
}

TEST(ZelmSaver, RemembersWhatItSavedAndTicksTheClockOnce)
{
    const RefPtr<TestSaver> saver(new TestSaver("png"));

    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(saver->Save("a.png")); }), 1);
    EXPECT_EQ(*saver, Ageable::GlobalTime);
    EXPECT_EQ(saver->lastFile, "a.png");
    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(saver->autosave()); }), 1);
    EXPECT_EQ(*saver, Ageable::GlobalTime);
    EXPECT_THAT(saver->files, ElementsAre("a.png", "a.png"));
}

TEST(ZelmSaver, ChangesNothingWhenItFails)
{
    const RefPtr<TestSaver> saver(new TestSaver("png"));
    saver->Save("good.png");
    const Ageable before = *saver;
    saver->succeeds = false;

    EXPECT_EQ(ticksOf([&] {
                  EXPECT_FALSE(saver->Save("bad.png"));
                  EXPECT_FALSE(saver->autosave());
              }),
              0);
    EXPECT_EQ(*saver, before);
    EXPECT_EQ(saver->lastFile, "good.png");
    EXPECT_THAT(saver->files, ElementsAre("good.png", "bad.png", "good.png"));
}

TEST(ZelmSaver, SavesNothingAgainThatItNeverSaved)
{
    const RefPtr<TestSaver> saver(new TestSaver("png"));

    EXPECT_EQ(ticksOf([&] { EXPECT_FALSE(saver->autosave()); }), 0);
    EXPECT_TRUE(saver->files.empty());
}

} // namespace
} // namespace Quorl
