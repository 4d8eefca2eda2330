#include <quorl/services/Vprintf.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace Quorl
{

constinit int verbosity_level = -1;

void readVerbosityLevel()
{
    const char* const wanted = std::getenv("VVERBOSITY");
    verbosity_level = wanted ? std::atoi(wanted) : 0;
}

void Vprintf(int level, const char* format, ...)
{
    if (!isVprintfAudible(level)) return;
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fflush(stderr);
}

} // namespace Quorl
