#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/slots/VSlotTables.h>

#include <cstdint>
#include <map>

namespace Quorl
{

/// Goes through the live inputs of a container, by level, then by name, and holds the one at which
/// it stands. What it passes is told at a high verbosity.
///
/// The container must outlive it. Inputs may come and go meanwhile, but not at the level where it
/// stands.
class InputCursor
{
public:
    static constexpr int kTraceVerbosity = 100; ///< of `Vprintf`

    InputCursor(const VSlotContainer& container, int maxExpertLevel);

    /// Goes on to the next input. \return false behind the last one.
    bool next();

    /// Lets go of the input where it stands.
    void leave() { slot_ = RefPtr<VSlot>(); }

    const RefPtr<VSlot>& slot() const { return slot_; }
    int level() const { return level_->first; }
    int finishedLevels() const { return finishedLevels_; }

private:
    using Levels = std::map<std::int32_t, VNamedInputSet>;

    bool hasLevel() const { return level_ != levels_.end() && level_->first <= maxExpertLevel_; }
    bool nextOfLevel();

    const Levels& levels_;
    const int maxExpertLevel_;
    Levels::const_iterator level_;
    VNamedInputSet::const_iterator place_; // of the input, if it stands at one
    int finishedLevels_ = 0;
    bool isInLevel_ = false;
    RefPtr<VSlot> slot_;
};

} // namespace Quorl
