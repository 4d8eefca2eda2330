#pragma once

#include <stdlib.h>

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace QuorlTest
{

/// A new, empty folder that is removed with all that is in it.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "quorl-XXXXXX").string();
        if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
        path_ = name;
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    /// How many files and folders there are in it.
    std::size_t count() const
    {
        std::size_t files = 0;
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            files += entry.exists() ? 1U : 0U;
        return files;
    }

private:
    std::filesystem::path path_;
};

} // namespace QuorlTest
