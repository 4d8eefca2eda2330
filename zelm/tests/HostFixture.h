#pragma once

#include <tests/support/FileBytes.h>
#include <tests/support/ProgramFixture.h>
#include <tests/support/TemporaryFolder.h>
#include <zelm/network/Json.h>

#include <string>

namespace Zelm
{

using QuorlTest::bytesOf;
using QuorlTest::writeBytes;

/// Starts the program in an empty folder, with the modules of these tests and a cache of its own.
class HostFixture : public QuorlTest::ProgramFixture
{
protected:
    void zelm(const std::string& arguments) { runCommand(commandOf(arguments)); }

    /// What starts the program, for the shell.
    std::string commandOf(const std::string& arguments, const std::string& environment = "") const
    {
        return "cd " + folder.path().string() + " && " + environment +
               " ZELM_CACHE=" + (caches / "cache").string() +
               " ZELM_PLUGIN_PATH=" ZELM_TEST_MODULES " " + ZELM_PROGRAM + " " + arguments;
    }

    /// Writes "a.json" with these members, and runs it.
    void runNetwork(const std::string& members, const std::string& options = "")
    {
        writeBytes(folder / "a.json", R"({"zelm-network": 1, )" + members + "}");
        zelm("run a.json " + options);
    }

    /// One clear line, whose code is this.
    void expectComplaint(int code, const std::string& words)
    {
        EXPECT_EQ(status, code) << words;
        EXPECT_EQ(err.substr(0, 6), "zelm: ") << words;
        EXPECT_NE(err.find(words), std::string::npos) << err;
        EXPECT_EQ(err.find('\n'), err.size() - 1) << err;
    }

    Json json() const { return Json::parse(out, nullptr, false); }

    QuorlTest::TemporaryFolder folder;
    QuorlTest::TemporaryFolder caches;
};

} // namespace Zelm
