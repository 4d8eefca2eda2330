#include <quorl/modules/ZelmSaver.h>
#include <tests/modules/TestSaver.h>
#include <tests/support/Node.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <utility>

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

/// A format that does something when it has written.
class BusySaver final : public ZelmSaver
{
public:
    explicit BusySaver(std::function<void(BusySaver&)> atEnd)
        : ZelmSaver("busy"), act_(std::move(atEnd))
    {
    }
    bool save(const std::string& file) override
    {
        act_(*this);
        written = file;
        return true;
    }
    std::string written;

private:
    const std::function<void(BusySaver&)> act_;
};

TEST(ZelmSaver, MayBeLetGoOfInItsSave)
{
    RefPtr<BusySaver> owner(new BusySaver([&](BusySaver&) { owner = RefPtr<BusySaver>(); }));
    WeakPtr<BusySaver> saver = owner;
    EXPECT_TRUE(saver->Save("first"));
    EXPECT_FALSE(saver);

    owner = RefPtr<BusySaver>(new BusySaver([&](BusySaver&) { owner = RefPtr<BusySaver>(); }));
    saver = owner;
    saver->lastFile = "again";
    EXPECT_TRUE(saver->autosave());
    EXPECT_FALSE(saver);
}

TEST(ZelmSaver, SavesAgainToTheFileThatWasTheLastAsItBegan)
{
    const std::string first = "a name that is too long to stand in the text itself";
    const RefPtr<BusySaver> saver(
        new BusySaver([](BusySaver& self) { self.lastFile = std::string(100, 'x'); }));
    saver->lastFile = first;

    EXPECT_TRUE(saver->autosave());

    EXPECT_EQ(saver->written, first);
}

} // namespace
} // namespace Quorl
