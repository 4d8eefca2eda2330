#pragma once

#include <tests/support/FileBytes.h>
#include <tests/support/ProgramFixture.h>
#include <tests/support/TemporaryFolder.h>

#include <filesystem>
#include <string>

namespace QuorlTest
{

/// A folder with three modules, of which the one in the middle is broken, and a host that opens it.
class FolderOfModules : public ProgramFixture
{
protected:
    static constexpr const char* kHarm = "harm.zelm";

    FolderOfModules()
    {
        copy("good", "first.zelm");
        copy("good", "last.zelm");
    }

    static std::filesystem::path built(const std::string& folder, const std::string& file)
    {
        return std::filesystem::path(BROKEN_MODULES) / folder / file;
    }

    void copy(const std::string& folder, const std::string& file) const
    {
        std::filesystem::copy_file(built(folder, file), modules_ / file);
    }

    void write(const std::string& file, const std::string& bytes) const
    {
        writeBytes(modules_ / file, bytes);
    }

    std::filesystem::path path(const std::string& file) const { return modules_ / file; }

    /// Runs the host in the folder.
    void open() { run(OPEN_FOLDER); }

    /// \return what the system's loader says of the broken one.
    std::string wordsOfTheLoader()
    {
        run(std::string(BARE_LOADER) + " ./" + kHarm);
        return out;
    }

    /// What the host has written into its log.
    std::string log() const
    {
        return std::filesystem::exists(path("ZelmError.log")) ? bytesOf(path("ZelmError.log")) : "";
    }

private:
    void run(const std::string& command)
    {
        runCommand("cd " + modules_.path().string() + " && exec " + command);
    }

    const TemporaryFolder modules_;
};

} // namespace QuorlTest
