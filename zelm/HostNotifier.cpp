#include "HostNotifier.h"

#include "Interruption.h"
#include "Output.h"

#include <unistd.h>

#include <cstdio>

namespace Zelm
{

void HostNotifier::warn(const std::string& text)
{
    Output::complain("warning: " + text);
}

void HostNotifier::warn(const WarnInfo& info)
{
    Output::complain("warning: " + info.origin + ": " + info.text +
                     (info.details.empty() ? "" : ": " + info.details));
}

bool HostNotifier::progress(unsigned long /*id*/, const std::string& text, int current, int total)
{
    if (::isatty(STDERR_FILENO))
        std::fprintf(stderr, "\r\033[K%s %d/%d%s", text.c_str(), current, total,
                     current >= total ? "\r\033[K" : "");
    return !Interruption::isWanted();
}

} // namespace Zelm
