#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace Zelm
{

/// What is to take the place of a file, so that this is whole or as it was before, whatever happens
/// meanwhile. It is made in a new folder beside that place, where its name is free, and the folder
/// goes with this.
///
/// Links are followed, and a file hands its mode on to what replaces it. A device or a pipe is not
/// replaced: what was made is written to it.
class Replacement
{
public:
    /// \throws NetworkError with the system's reason, here and below.
    explicit Replacement(const std::string& target);
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// Where it is to be made, with the name of the target. Nothing is there yet, and whatever else
    /// is made in that folder goes with it.
    const std::string& path() const { return path_; }

    /// Makes it of these bytes.
    void write(std::string_view bytes);

    /// \pre it is made.
    void takePlace();

private:
    [[noreturn]] void fail(int reason) const;
    void writeAll(std::string_view bytes) const;
    void copyTo(const std::string& device);

    const std::string target_;
    const std::filesystem::path place_; // behind all links
    mode_t mode_ = 0;                   // of what is there; 0 if nothing is
    std::string folder_;
    std::string path_;
    int descriptor_ = -1; // of what was made, or of a device
};

} // namespace Zelm
