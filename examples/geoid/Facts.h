#pragma once

#include "Network.h"

#include <set>
#include <string>
#include <vector>

namespace Geoid
{

/// What a lazy network in several contexts promises, checked on what really ran. Each check prints
/// its verdict on standard output.
class Facts
{
public:
    explicit Facts(const Network& network) : network_(network) {}

    /// All objects ran, each once, and each after those that it takes something from.
    void everythingRanUpstreamFirst(const std::string& context, const std::vector<Run>& runs);

    /// None but these ran, each once, in an order that holds as well.
    void onlyTheseRan(const std::string& context, const std::vector<Run>& runs,
                      const std::set<std::string>& expected);

    void nothingRan(const std::string& context, const std::vector<Run>& runs);

    bool allHold() const { return failures_ == 0; }

private:
    bool isUpstreamFirst(const std::vector<Run>& runs) const;
    void say(bool holds, const std::string& context, const std::string& fact);

    const Network& network_;
    int failures_ = 0;
};

} // namespace Geoid
