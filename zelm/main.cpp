#include "CommandLine.h"
#include "Failure.h"
#include "Interruption.h"
#include "Output.h"
#include "Settings.h"

#include <quorl/objects/VObject.h>
#include <zelm/network/NetworkError.h>

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace
{

std::string firstLine(const std::string& text)
{
    return text.substr(0, text.find('\n'));
}

/// The parser does not say which word it took for a command.
std::string wordsOf(const CLI::App& program, const CLI::ParseError& error)
{
    const std::string words = firstLine(error.what());
    if (!words.starts_with("A subcommand is required")) return words;
    const std::vector<std::string> rest = program.remaining(true);
    if (rest.empty()) return "a command is required";
    return rest.front() + ": there is no such " +
           (rest.front().starts_with('-') ? "option" : "command");
}

int complain(const std::string& reason, int status)
{
    Zelm::Output::complain(reason);
    return status;
}

int runProgram(CLI::App& program, int argc, char** argv)
{
    try
    {
        program.parse(argc, argv); // runs the command, too
        Zelm::Output::finish();
        return Zelm::Done;
    }
    catch (const CLI::CallForHelp&)
    {
        Zelm::Output::print(program.help());
        Zelm::Output::finish();
        return Zelm::Done;
    }
    catch (const CLI::RuntimeError& error) // has said why
    {
        Zelm::Output::finish();
        return error.get_exit_code();
    }
    catch (const CLI::ParseError& error)
    {
        return complain(wordsOf(program, error) + "; see zelm --help", Zelm::WrongUsage);
    }
    catch (const Zelm::UsageError& error)
    {
        return complain(error.what(), Zelm::WrongUsage);
    }
}

} // namespace

int main(int argc, char** argv)
try
{
    Zelm::Output::openClosedStreams();
    Zelm::Output::moveDiagnosticsAside();
    Zelm::Interruption::listen();
    Zelm::Settings settings;
    CLI::App program("Runs, draws, inspects and explains networks of objects.", "zelm");
    Zelm::addCommandLine(program, settings);
    program.parse_complete_callback(
        [&settings] { Quorl::VObject::VERBOSE_REQUEST = settings.verbosity; });
    return runProgram(program, argc, argv);
}
catch (...)
{
    Zelm::Output::complain(Zelm::wordsOfException());
    return Zelm::Failed;
}
