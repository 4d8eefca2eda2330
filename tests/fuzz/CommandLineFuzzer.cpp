#include <zelm/CommandLine.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace
{

/// Thrown where all is understood, before the first command runs.
struct Understood
{
};

/// One argument a line, the last one first, as the parser wants them.
std::vector<std::string> argumentsOf(const std::string& text)
{
    std::vector<std::string> arguments;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) arguments.push_back(line);
    std::ranges::reverse(arguments);
    return arguments;
}

/// Whether a program could be started with them: they and their addresses share a fourth of a stack
/// of 8 MiB.
bool fitsASystemCall(const std::vector<std::string>& arguments)
{
    constexpr std::size_t kMost = std::size_t{2} << 20U;
    std::size_t size = 0;
    for (const std::string& argument : arguments) size += argument.size() + 1 + sizeof(char*);
    return size <= kMost;
}

} // namespace

/// Any words are understood, or refused with a reason; numbers are in their ranges then.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<std::string> arguments =
        argumentsOf(std::string(reinterpret_cast<const char*>(data), size));
    constexpr int kNotForTheCorpus = -1;
    if (!fitsASystemCall(arguments)) return kNotForTheCorpus;
    Zelm::Settings settings;
    CLI::App program("Fuzzed.", "zelm");
    Zelm::addCommandLine(program, settings);
    program.parse_complete_callback([] { throw Understood(); });
    try
    {
        program.parse(std::vector(arguments)); // which takes them one by one
        std::abort();
    }
    catch (const Understood&)
    {
        if (settings.verbosity < 0 || settings.verbosity > 100) std::abort();
    }
    catch (const CLI::CallForHelp&)
    {
        if (program.help().empty()) std::abort();
    }
    catch (const CLI::ParseError& error)
    {
        if (std::string(error.what()).empty()) std::abort();
    }
    return 0;
}
