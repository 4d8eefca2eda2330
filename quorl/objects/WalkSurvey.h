#pragma once

#include <quorl/Forward.h>
#include <quorl/objects/WalkGraph.h>
#include <quorl/slots/InputCursor.h>

#include <deque>
#include <vector>

namespace Quorl
{

/// Finds out what a walk meets where nothing is to be done, without a visit. Each object has one
/// place, that of the beginning first.
///
/// It follows a walk that has just ended, and goes no further than that: ages that nobody has asked
/// for are not to be asked for by it.
class WalkSurvey
{
public:
    explicit WalkSurvey(const WalkGraph& walked) : walked_(walked) {}

    enum class Result
    {
        Complete,
        Impossible, ///< visits there are more than comparisons of ages, or end in a cycle
        Disturbed,  ///< the walk was not there
    };

    /// \pre walks say nothing.
    Result from(VObject& root);

    const WalkGraph& graph() const { return graph_; }

private:
    using Place = WalkGraph::Place;

    struct Stop
    {
        VObject& object;
        Place place;
        InputCursor inputs;
    };

    Result enter(VObject& object);
    Result follow(VObject& source, Place asker);

    const WalkGraph& walked_;
    WalkGraph graph_;
    std::deque<Stop> path_;
    std::vector<bool> isOnPath_; // by place
};

} // namespace Quorl
