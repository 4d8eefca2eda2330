#include "Output.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace Zelm::Output
{
namespace
{

std::FILE* theOutput = stdout;

constexpr const char* kBold = "\033[1m";
constexpr const char* kRed = "\033[1;31m";
constexpr const char* kPlain = "\033[0m";

bool isInColour(std::FILE* stream)
{
    const char* const refusal = std::getenv("NO_COLOR");
    return isTerminal(stream) && !(refusal && *refusal);
}

std::string coloured(const char* colour, const std::string& text, std::FILE* stream)
{
    return isInColour(stream) ? colour + text + kPlain : text;
}

} // namespace

bool isTerminal(std::FILE* stream)
{
    const char* const kind = std::getenv("TERM");
    return ::isatty(::fileno(stream)) && kind && std::strcmp(kind, "dumb") != 0;
}

/// In this order, since the lowest free number is taken. Standard output is opened for reading, so
/// that who prints learns that it is closed.
void openClosedStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(stream, F_GETFD) < 0)
            ::open("/dev/null", stream == STDERR_FILENO ? O_WRONLY : O_RDONLY);
}

void moveDiagnosticsAside()
{
    const int mine = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    std::FILE* const stream = mine < 0 ? nullptr : ::fdopen(mine, "w");
    if (!stream || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
        throw std::runtime_error("the output is closed");
    theOutput = stream;
}

void print(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), theOutput);
}

void printLine(const std::string& text)
{
    print(text + '\n');
}

void printJson(const Json& json, bool inOneLine)
{
    printLine(json.dump(inOneLine ? -1 : 2, ' ', false, Json::error_handler_t::replace));
}

std::string strong(const std::string& text)
{
    return coloured(kBold, text, theOutput);
}

std::string alarming(const std::string& text)
{
    return coloured(kRed, text, theOutput);
}

void complain(const std::string& words)
{
    std::fflush(stdout);
    std::fprintf(stderr, "%s %s\n", coloured(kRed, "zelm:", stderr).c_str(), words.c_str());
}

void finish()
{
    if (std::fflush(theOutput) != 0 || std::ferror(theOutput) != 0)
        throw std::runtime_error(std::string("the output cannot be written: ") +
                                 std::strerror(errno));
}

std::string padded(const std::string& text, std::size_t width)
{
    return text + std::string(width - std::min(width, text.size()), ' ');
}

} // namespace Zelm::Output
