#include "Commands.h"
#include "Failure.h"
#include "Output.h"

#include <zelm/network/WholeFile.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

/// Starts the project of a module: one object, a network that tests it, and how it is built.
namespace Zelm
{
namespace
{

namespace fs = std::filesystem;

constexpr const char* kBuild = R"(cmake_minimum_required(VERSION 3.25)
project(@stem@ LANGUAGES CXX)

find_package(Quorl CONFIG REQUIRED)
zelm_add_module(@stem@ @Class@.cpp)

# Evaluates a network of this module.
enable_testing()
add_test(NAME @stem@ COMMAND Quorl::zelm run ${CMAKE_CURRENT_SOURCE_DIR}/@stem@.json
    --modules ${CMAKE_CURRENT_BINARY_DIR} --cache ${CMAKE_CURRENT_BINARY_DIR}/no.cache)
)";

constexpr const char* kSource = R"(#include <quorl/kit/Module.h>
#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>

/// The sum of two numbers.
class @Class@ final : public Quorl::VObject
{
public:
    using VObject::VObject;

    bool update(Quorl::VRequest& request, double /*precision*/) override
    {
        sum_.set(request, left_(request) + right_(request));
        return true;
    }

private:
    const Quorl::InputSlot<double> left_{*this, "left", 0.0, Quorl::perContext()};
    const Quorl::InputSlot<double> right_{*this, "right", 0.0, Quorl::perContext()};
    const Quorl::OutputSlot<double> sum_{*this, "sum"};
};

Quorl::VCreator<@Class@> @stem@Creator("@Class@/Sum", {.accepts = {typeid(double)},
                                                       .provides = {typeid(double)},
                                                       .summary = "The sum of two numbers"});

ZELM_MODULE(@stem@)
{
    initialization.title = "@Class@";
    return true;
}
)";

constexpr const char* kNetwork = R"({
  "zelm-network": 1,
  "objects": [
    {"name": "@stem@", "creator": "@Class@/Sum", "module": "@stem@.zelm"}
  ],
  "contexts": [
    {"name": "@stem@", "values": {
      "@stem@": {"left": 1.0, "right": 2.0}
    }}
  ],
  "request": [
    "@stem@"
  ]
}
)";

constexpr const char* kReadMe = R"(# @Class@

A module for Zelm. With Quorl installed in ~/quorl:

    cmake -G Ninja -B build -DCMAKE_PREFIX_PATH=~/quorl
    cmake --build build
    ctest --test-dir build
    ~/quorl/bin/zelm inspect @Class@/Sum --modules build
    ~/quorl/bin/zelm run @stem@.json --modules build
)";

std::string replaced(std::string text, const std::string& mark, const std::string& words)
{
    for (auto at = text.find(mark); at != std::string::npos;
         at = text.find(mark, at + words.size()))
        text.replace(at, mark.size(), words);
    return text;
}

/// Words, each between blanks, that a project cannot have for itself: the keywords of C++, targets
/// of CMake, and namespaces that a module sees (its class begins with a capital letter).
constexpr std::string_view kTaken =
    " alignas alignof and and_eq asm auto bitand bitor bool break case catch char char8_t"
    " char16_t char32_t class compl concept const const_cast consteval constexpr constinit"
    " continue co_await co_return co_yield decltype default delete do double dynamic_cast else"
    " enum explicit export extern false float for friend goto if inline int long mutable"
    " namespace new noexcept not not_eq nullptr operator or or_eq private protected public"
    " register reinterpret_cast requires return short signed sizeof static static_assert"
    " static_cast struct switch template this thread_local throw true try typedef typeid"
    " typename union unsigned using virtual void volatile wchar_t while xor xor_eq"
    " all clean edit_cache help install package rebuild_cache test"
    " quorl tolmen ";

std::string classNameOf(std::string stem)
{
    stem.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(stem.front())));
    return stem;
}

void checkName(const std::string& name)
{
    const auto isWordly = [](unsigned char sign) {
        return sign < 0x80 && (std::islower(sign) != 0 || std::isdigit(sign) != 0 || sign == '_');
    };
    const bool isWord = !name.empty() && std::ranges::all_of(name, isWordly) &&
                        std::islower(static_cast<unsigned char>(name.front())) != 0;
    if (!isWord)
        throw UsageError("new-plugin " + name +
                         ": a name of small letters, digits and underscores is expected, which "
                         "begins with a letter");
    if (kTaken.find(" " + name + " ") != std::string_view::npos)
        throw UsageError("new-plugin " + name +
                         ": this is a word of C++, CMake or Quorl; another name is expected");
}

using NamedTexts = std::vector<std::pair<std::string, std::string>>;

/// Writes all files or none. \return their paths.
std::vector<std::string> writeFiles(const fs::path& folder, const NamedTexts& files)
{
    std::vector<std::string> written;
    try
    {
        for (const auto& [name, text] : files)
        {
            const std::string path = (folder / name).string();
            writeWholeFile(path, text);
            written.push_back(path);
        }
    }
    catch (...)
    {
        std::error_code isLeft;
        for (const std::string& path : written) fs::remove(path, isLeft);
        throw;
    }
    return written;
}

/// \return the files that were written.
std::vector<std::string> makeProject(const std::string& name, const fs::path& folder)
{
    checkName(name);
    if (fs::exists(folder) && !(fs::is_directory(folder) && fs::is_empty(folder)))
        throw UsageError("new-plugin " + folder.string() + ": this is there already");
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (failure) throw std::runtime_error(folder.string() + ": " + failure.message());
    const std::string className = classNameOf(name);
    const auto filled = [&](const char* text) {
        return replaced(replaced(text, "@stem@", name), "@Class@", className);
    };
    return writeFiles(folder, {{"CMakeLists.txt", filled(kBuild)},
                               {className + ".cpp", filled(kSource)},
                               {name + ".json", filled(kNetwork)},
                               {"README.md", filled(kReadMe)}});
}

void tell(const Settings& settings, const std::string& name, const std::vector<std::string>& files)
{
    if (settings.asJson) return Output::printJson({{"module", name}, {"files", files}});
    for (const std::string& file : files) Output::printLine(file);
}

} // namespace

void addNewPluginCommand(CLI::App& program, const Settings& settings)
{
    CLI::App* const command = program.add_subcommand(
        "new-plugin", "Starts the project of a module, which builds and tests itself.");
    const auto words = std::make_shared<std::pair<std::string, std::string>>();
    command->fallthrough();
    command->add_option("NAME", words->first, "of the module")->required();
    command->add_option("DIR", words->second, "the folder of the project; otherwise the name");
    command->footer("\nExample:\n  zelm new-plugin summit ~/modules/summit");
    command->callback([words, &settings] {
        const auto& [name, folder] = *words;
        tell(settings, name, makeProject(name, folder.empty() ? name : folder));
    });
}

} // namespace Zelm
