#pragma once

#include <quorl/services/VActionNotifier.h>

#include <string>
#include <vector>

namespace QuorlTest
{

/// Hears of warnings from its construction to its end.
class Warnings
{
public:
    Warnings() { subscriber_->activate(); }

    const std::vector<std::string>& texts() const { return subscriber_->texts; }

private:
    struct Subscriber final : Quorl::VActionNotifier
    {
        using VActionNotifier::warn;
        void warn(const std::string& text) override { texts.push_back(text); }
        std::vector<std::string> texts;
    };

    Quorl::RefPtr<Subscriber> subscriber_{new Subscriber};
};

} // namespace QuorlTest
