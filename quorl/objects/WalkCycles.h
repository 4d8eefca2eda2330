#pragma once

#include <quorl/objects/WalkGraph.h>

#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace Quorl
{

/// Where a walk was cut, since it came to an object that it was inside of.
///
/// What a visit has found holds as long as the walk stays inside of all those that were passed over
/// upstream. An object that was passed over itself, upstream of itself, is the head of a cycle:
/// what its visit has found holds only for walks that have not come through any cycle. How often an
/// object of a cycle is visited is how many ways lead there that pass nobody twice, so that no walk
/// can spare more in general.
class WalkCycles
{
public:
    using Place = WalkGraph::Place;
    using Passed = std::set<Place>; ///< visits that the walk was inside of when it met them again

    /// A visit is to be paid to the object that was met first at a place.
    void add() { visits_.emplace_back(); }

    /// \return whether the walk is inside of the object anyway: somebody has let it out meanwhile.
    bool enter(Place place, Place first);

    /// What a walk that throws is inside of is not left: it is passed over from then on.
    void leave(Place place, Place first);

    bool isUnderWay(Place place) const { return visits_[place].isUnderWay; }

    /// A visit has found nothing to do, and these were passed over upstream, itself perhaps too.
    void settle(Place place, Place first, Passed&& passed);

    /// Others that were passed over upstream of a visit.
    const Passed& passedBy(Place place) const;

    /// Whether the walk would be cut upstream of a visit where it was then: it is still inside of
    /// those that it was inside of, and of nobody else who was met there.
    bool isCutAsBefore(Place place) const;

private:
    struct Visit
    {
        bool isUnderWay = false;
        bool wasCyclic = false; // known to be, as it was entered
        bool isHead = false;    // it was met again itself, further upstream

        // Of the first place of an object

        bool isCyclic = false; // was found in a cycle
        std::uint32_t underWay = 0;
    };

    std::vector<Visit> visits_;
    std::map<Place, Passed> passed_;   // of visits that have some
    std::uint32_t cyclicUnderWay_ = 0; // visits of objects that were known to be cyclic
};

} // namespace Quorl
