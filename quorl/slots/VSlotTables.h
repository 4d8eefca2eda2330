#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/TypeInfo.h>
#include <quorl/foundation/Watched.h>
#include <quorl/foundation/mutex.h>
#include <quorl/slots/VSlotSet.h>

#include <cstdint>
#include <map>
#include <set>

namespace Quorl
{

using CompareSlots = CompareSlotsByName;

/// The inputs of one expert level. Its end is the last place to notice that a slot was destroyed
/// behind the back of its handles, and says so on standard output.
class QUORL_API VNamedInputSet : public Tolmen::WatchedTable<std::set<RefPtr<VSlot>, CompareSlots>>
{
public:
    VNamedInputSet();
    VNamedInputSet(const VNamedInputSet&) = delete;
    VNamedInputSet& operator=(const VNamedInputSet&) = delete;
    ~VNamedInputSet();
};

/// The inputs by expert level; a lower one is more basic. Sets stay where they are: what would take
/// one away as a whole, unseen by those who watch the shape of networks, is not to be had.
class VInputLevels : public std::map<std::int32_t, VNamedInputSet>
{
public:
    VInputLevels() = default;
    VInputLevels(const VInputLevels&) = delete;
    VInputLevels& operator=(const VInputLevels&) = delete;
    ~VInputLevels() = default;

    template <class... Any>
    void extract(Any&&...) = delete;
    template <class Other>
    void merge(Other&&) = delete;
    template <class Other>
    void swap(Other&) = delete;
    friend void swap(VInputLevels&, VInputLevels&) = delete;
};

/// Several outputs may share a type; those of one type stand in the order of registration.
using VOutputSlots = std::multimap<Tolmen::TypeInfo, RefPtr<VSlot>>;

/// What a container keeps of its slots. The inputs have no lock: they are set up before the object
/// runs, or by the thread that edits the network.
struct QUORL_API VSlotTables
{
    VSlotTables();
    VSlotTables(const VSlotTables&) = delete;
    VSlotTables& operator=(const VSlotTables&) = delete;
    ~VSlotTables();

    VInputLevels Inputs;
    Ageable InputSetAge; ///< when an input was last added, removed or attached
    VOutputSlots Outputs;
    Tolmen::mutex OutputMutex; ///< guards `Outputs` where they are searched and registered
};

} // namespace Quorl
