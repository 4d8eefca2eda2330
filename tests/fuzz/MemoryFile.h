#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace QuorlFuzz
{

/// A file without a name that holds the bytes of an input, and is replaced by the next.
inline std::string pathOf(const std::uint8_t* data, std::size_t size)
{
    static const int file = ::memfd_create("input", MFD_CLOEXEC);
    static const std::string path = "/proc/self/fd/" + std::to_string(file);
    if (::ftruncate(file, 0) != 0 || ::pwrite(file, data, size, 0) != static_cast<ssize_t>(size))
        std::abort();
    return path;
}

} // namespace QuorlFuzz
