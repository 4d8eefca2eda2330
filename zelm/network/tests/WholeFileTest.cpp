#include <zelm/network/WholeFile.h>

#include "Complaint.h"

#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <string>

namespace Zelm
{
namespace
{

TEST(WholeFile, IsReadAsItWasWritten)
{
    const QuorlTest::TemporaryFolder folder;
    const std::string bytes = std::string(200'000, 'a') + std::string("\0\r\n", 3);

    writeWholeFile(folder / "a", bytes);

    EXPECT_EQ(readWholeFile(folder / "a"), bytes);
    EXPECT_EQ(folder.count(), 1U);
}

TEST(WholeFile, IsNoFolderAndNoDevice)
{
    EXPECT_EQ(complaintOf([] { readWholeFile("/dev"); }), "/dev: this is a folder, not a file");
    EXPECT_EQ(complaintOf([] { readWholeFile("/dev/zero"); }),
              "/dev/zero: this is a device, not a file");
    EXPECT_EQ(complaintOf([] { readWholeFile("/none"); }), "/none: No such file or directory");
}

} // namespace
} // namespace Zelm
