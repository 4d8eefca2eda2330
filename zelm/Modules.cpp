#include "Modules.h"

#include "Failure.h"
#include "Output.h"

#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>

namespace Zelm
{
namespace
{

namespace fs = std::filesystem;

std::string theReason; // of the last refusal

int noteReason(const std::string& /*caption*/, const std::string& text)
{
    constexpr int kGoOn = 5;
    theReason = text.substr(0, text.find('\n'));
    return kGoOn;
}

/// Where the modules are that came with this program, installed or just built.
std::vector<std::string> ownFolders()
{
    const fs::path here = fs::read_symlink("/proc/self/exe").parent_path();
    return {(here / ZELM_INSTALLED_MODULES).lexically_normal().string(),
            (here / "../modules").lexically_normal().string()};
}

std::vector<std::string> foldersOfEnvironment()
{
    const char* const path = std::getenv("ZELM_PLUGIN_PATH");
    std::istringstream words(path ? path : "");
    std::vector<std::string> folders;
    for (std::string folder; std::getline(words, folder, ':');)
        if (!folder.empty()) folders.push_back(folder);
    return folders;
}

std::vector<std::string> modulesIn(const std::string& folder)
{
    std::vector<std::string> files;
    std::error_code failure;
    for (const auto& entry : fs::directory_iterator(folder, failure))
        if (entry.path().extension() == ".zelm") files.push_back(entry.path().string());
    std::ranges::sort(files);
    return files;
}

} // namespace

Modules::Modules(const Settings& settings)
{
    for (const std::string& folder : settings.folders)
    {
        if (!fs::is_directory(folder))
            throw UsageError("--modules " + folder + ": there is no such folder");
        folders_.push_back(folder);
    }
    for (const auto& others : {foldersOfEnvironment(), ownFolders()})
        for (const std::string& folder : others)
            if (fs::is_directory(folder) && std::ranges::find(folders_, folder) == folders_.end())
                folders_.push_back(folder);

    std::set<fs::path> names;
    for (const std::string& folder : folders_)
        for (const std::string& file : modulesIn(folder))
            if (names.insert(fs::path(file).filename()).second) files_.push_back(file);
}

void Modules::open()
{
    for (const std::string& file : files_)
        if (Quorl::VModules::isLoadable(file)) load(file);
}

void Modules::openAll()
{
    for (const std::string& file : files_)
        if (!Quorl::VModules::find(file)) load(file);
}

void Modules::load(const std::string& file)
{
    const auto before = Quorl::VModules::setErrorDialog(&noteReason);
    theReason = "its init routine refuses";
    const bool isLoaded = Quorl::LoadVModule(file);
    Quorl::VModules::setErrorDialog(before);
    if (!isLoaded) refused_.push_back({file, "refused", theReason, ""});
}

std::vector<ModuleState> Modules::states() const
{
    std::vector<ModuleState> states;
    for (const auto& [path, info] : *Quorl::VGlobals::theGlobals().modules)
        states.push_back({path, info.module ? "loaded" : "cached", "",
                          info.module ? info.module->sourceInfo : std::string()});
    states.insert(states.end(), refused_.begin(), refused_.end());
    std::ranges::sort(states, {}, &ModuleState::path);
    return states;
}

void Modules::complain() const
{
    for (const ModuleState& module : refused_)
        Output::complain("the module " + module.path + " was refused: " + module.reason);
}

} // namespace Zelm
