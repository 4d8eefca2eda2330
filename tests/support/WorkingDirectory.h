#pragma once

#include <filesystem>
#include <system_error>

namespace QuorlTest
{

/// Makes a folder the working directory of the process while this lives.
class WorkingDirectory
{
public:
    explicit WorkingDirectory(const std::filesystem::path& folder)
        : before_(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder);
    }
    ~WorkingDirectory()
    {
        std::error_code ignored;
        std::filesystem::current_path(before_, ignored);
    }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    const std::filesystem::path before_;
};

} // namespace QuorlTest
