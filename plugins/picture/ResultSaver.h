#pragma once

#include <plugins/grid/MapError.h>

#include <quorl/modules/ZelmSaver.h>
#include <quorl/services/VActionNotifier.h>

#include <filesystem>
#include <string>

namespace Maps
{

/// Saves what an object made last, in whichever context that was, in one format.
template <class Result>
class ResultSaver final : public Quorl::ZelmSaver
{
public:
    /// Writes a result whole or not at all; throws MapError if it cannot.
    using Write = void (*)(const Result& result, const std::filesystem::path& path);

    ResultSaver(const std::string& suffix, Write write) : ZelmSaver(suffix), write_(write) {}

    /// \return false if nothing was made yet, or it cannot be written; the subscribers of the
    /// action channel are warned why.
    bool save(const std::string& file) override
    {
        try
        {
            write_(result, file);
            return true;
        }
        catch (const MapError& error)
        {
            Quorl::VActionNotifier::Warning({"save", "A file cannot be saved", error.what(), 0});
            return false;
        }
    }

    Result result;

private:
    const Write write_;
};

} // namespace Maps
