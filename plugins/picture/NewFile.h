#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace Maps
{

/// A file that is written whole or not at all.
///
/// The bytes go to a new file beside the target, which takes its place when it is complete. Until
/// then what stood there stays as it was, and the new file is removed when this ends. Only a
/// regular file is ever replaced.
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
    void open();

    std::filesystem::path target_;
    std::filesystem::path path_;
    std::FILE* file_ = nullptr;
    bool isDone_ = false;
};

/// What the system says of an error, by its number.
std::string systemReason(int error);

} // namespace Maps
