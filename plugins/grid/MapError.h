#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace Maps
{

/// The one failure of these modules: a sentence for the person who asked, in one line without
/// a full stop, which names the file or the parameter at fault. Nothing was changed by the call
/// that throws it.
class MapError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;

    /// The failure of something about a file: "'grid.gtx': no such file".
    static MapError about(const std::filesystem::path& path, const std::string& reason)
    {
        std::string text = "'";
        text += path.string();
        text += "': ";
        text += reason;
        return MapError(text);
    }
};

} // namespace Maps
