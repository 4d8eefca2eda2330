#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace QuorlTest
{

/// All that is in a file; empty if it cannot be read.
inline std::string bytesOf(const std::filesystem::path& path)
{
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

/// Makes the file, or replaces what is in it.
inline void writeBytes(const std::filesystem::path& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

} // namespace QuorlTest
