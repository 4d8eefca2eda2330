#include "HostNotifier.h"

#include "Interruption.h"
#include "Output.h"

#include <unistd.h>

#include <cstdio>
#include <string>

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
    constexpr auto kInterval = std::chrono::milliseconds(50);
    const auto now = std::chrono::steady_clock::now();
    const bool isDone = current >= total;
    if (::isatty(STDERR_FILENO) && (isDone || now - last_ >= kInterval))
    {
        last_ = now;
        const std::string line =
            isDone ? std::string()
                   : text + " " + std::to_string(current) + "/" + std::to_string(total);
        std::fprintf(stderr, "\r\033[K%s", line.c_str());
    }
    return !Interruption::isWanted();
}

} // namespace Zelm
