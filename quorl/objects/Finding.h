#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/Watch.h>
#include <quorl/objects/Repeats.h>

#include <cstdint>

namespace Quorl
{

/// What a visit that is paid finds out for those behind it.
class Finding
{
public:
    Finding(Repeats& repeats, Repeats::Place place) : repeats_(repeats), place_(place) {}

    Repeats::Place place() const { return place_; }

    void noteEntry()
    {
        if (repeats_.enter(place_)) noteMoreToDo();
    }

    void noteExit() { repeats_.leave(place_); }

    /// A place of memory on which the result depends.
    void notePlace(const void* place)
    {
        if (watch_) watch_->keep(place);
    }

    /// A validator has heard of the newest connection.
    void noteTold(const Ageable& validator);

    /// Something on which the result depends, and that code of others may change unseen.
    void noteUnwatched() { isKept_ = false; }

    /// A source has answered.
    void noteAnswer(const VObject& source);

    /// A source was passed over, as the walk is inside of it.
    void noteCycle(const VObject& source);

    /// Each further visit has something to do.
    void noteMoreToDo() { isSettled_ = false; }

    /// Code of others has run, or is about to.
    void noteForeignCode();

    /// The object had nothing to do.
    void noteIdle();

private:
    Repeats& repeats_;
    const Repeats::Place place_;
    Tolmen::Watch* const watch_ = repeats_.watchFor(place_); // null if there is no need
    std::uint32_t told_ = Repeats::kNobody;
    WalkCycles::Passed passed_;
    bool isSettled_ = true;
    bool isKept_ = watch_ != nullptr;
};

} // namespace Quorl
