#include <quorl/platform/Question.h>

#include <unistd.h>

#include <cstdio>

namespace Tolmen::Platform
{
namespace
{

/// The first letter of a line; 0 for an empty one, and at the end of the input.
char firstLetter()
{
    const int first = std::getchar();
    for (int rest = first; rest != '\n' && rest != EOF;) rest = std::getchar();
    return first == '\n' || first == EOF ? '\0' : static_cast<char>(first);
}

} // namespace

Answer askOnTerminal(const std::string& caption, const std::string& text)
{
    if (::isatty(STDIN_FILENO) == 0 || ::isatty(STDERR_FILENO) == 0) return Ignore;
    std::fprintf(stderr, "%s\n\n%s\n\n[Abort] [Ignore All] [Ignore] (a/l/i): ", caption.c_str(),
                 text.c_str());
    switch (firstLetter())
    {
        case 'a':
        case 'A': return Abort;
        case 'l':
        case 'L': return IgnoreAll;
        default: return Ignore;
    }
}

} // namespace Tolmen::Platform
