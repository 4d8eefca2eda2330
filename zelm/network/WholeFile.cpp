#include "WholeFile.h"

#include "NetworkError.h"
#include "Replacement.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace Zelm
{
namespace
{

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string& file, const std::string& reason)
{
    throw NetworkError(file, {}, "", "", reason);
}

/// What has no end is not read. What is not there at all is told by who opens it.
void checkKind(const std::string& file, const fs::file_status& status)
{
    if (fs::is_directory(status)) refuse(file, "this is a folder, not a file");
    if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_fifo(status))
        refuse(file, "this is a device, not a file");
}

} // namespace

std::string readWholeFile(const std::string& file)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(file, ignored);
    checkKind(file, status);
    std::ifstream stream(file, std::ios::binary);
    if (!stream) refuse(file, std::strerror(errno));

    constexpr std::size_t kMostOfAPipe = std::size_t{64} << 20U;
    constexpr std::size_t kBlock = std::size_t{64} << 10U;
    std::array<char, kBlock> block{};
    std::string text;
    while (stream.read(block.data(), block.size()) || stream.gcount() > 0)
    {
        text.append(block.data(), static_cast<std::size_t>(stream.gcount()));
        if (fs::is_fifo(status) && text.size() > kMostOfAPipe)
            refuse(file, "this pipe brings more than 64 MiB");
    }
    if (stream.bad()) refuse(file, std::strerror(errno));
    return text;
}

void writeWholeFile(const std::string& file, const std::string& bytes)
{
    Replacement replacement(file);
    replacement.write(bytes);
    replacement.takePlace();
}

} // namespace Zelm
