#pragma once

#include <quorl/services/VActionNotifier.h>

#include <chrono>
#include <string>

namespace Zelm
{

/// Tells the user what the kernel and the objects have to say: warnings on standard error, and how
/// far long work has come, if that is a terminal.
class HostNotifier final : public Quorl::VActionNotifier
{
public:
    using VActionNotifier::warn;
    void warn(const std::string& text) override;
    void warn(const WarnInfo& info) override;
    bool progress(unsigned long id, const std::string& text, int current, int total) override;

private:
    void clearProgress();

    bool isProgressShown_ = false;
    std::chrono::steady_clock::time_point last_; // when it told how far work has come
};

} // namespace Zelm
