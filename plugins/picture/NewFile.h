#pragma once

#include <sys/types.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace Maps
{

/// A file that is written whole or not at all.
///
/// The bytes go to a new file in a new folder beside the target, which takes its place and its mode
/// when it is complete. Until then what stood there stays as it was, and the folder goes when this
/// ends. Links are followed; a device or a pipe is not replaced, but written to.
class NewFile
{
public:
    /// \throws MapError which names the target and the reason, here and below.
    explicit NewFile(const std::filesystem::path& target);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    void write(std::string_view bytes);

    std::FILE* stream() { return file_; } ///< open until the file takes its place

    void takeThePlaceOfTheTarget();

    [[noreturn]] void fail(const std::string& reason) const;

private:
    [[noreturn]] void failOfSystem() const;
    bool isReplaced() const;
    void openBeside();

    std::filesystem::path target_;
    mode_t mode_ = 0;    // of what is there; 0 if nothing is
    std::string folder_; // empty where the target is written to
    std::string path_;   // in it
    std::FILE* file_ = nullptr;
};

/// What the system says of an error, by its number.
std::string systemReason(int error);

} // namespace Maps
