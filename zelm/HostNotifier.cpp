#include "HostNotifier.h"

#include "Interruption.h"
#include "Output.h"

#include <cstdio>
#include <string>

namespace Zelm
{

void HostNotifier::warn(const std::string& text)
{
    clearProgress();
    Output::complain("warning: " + text);
}

void HostNotifier::warn(const WarnInfo& info)
{
    clearProgress();
    Output::complain("warning: " + info.origin + ": " + info.text +
                     (info.details.empty() ? "" : ": " + info.details));
}

bool HostNotifier::progress(unsigned long /*id*/, const std::string& text, int current, int total)
{
    constexpr auto kInterval = std::chrono::milliseconds(50);
    const auto now = std::chrono::steady_clock::now();
    const bool isDone = current >= total;
    if (isDone)
        clearProgress();
    else if (now - last_ >= kInterval && Output::isTerminal(stderr))
    {
        last_ = now;
        isProgressShown_ = true;
        std::fprintf(stderr, "\r\033[K%s %d/%d", text.c_str(), current, total);
    }
    return !Interruption::isWanted();
}

void HostNotifier::clearProgress()
{
    if (isProgressShown_) std::fputs("\r\033[K", stderr);
    isProgressShown_ = false;
}

} // namespace Zelm
