#include "InputList.h"

#include <quorl/objects/VObject.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotIterator.h>

#include <unordered_set>

namespace Zelm
{
namespace
{

using Quorl::VObject;
using Quorl::VSlot;

struct Collection final : Quorl::VSlotIterator
{
    bool apply(const RefPtr<VSlot>& slot, int /*expertLevel*/) override
    {
        slots.push_back(slot);
        return true;
    }

    std::vector<RefPtr<VSlot>> slots;
};

} // namespace

std::vector<RefPtr<VSlot>> inputsOf(const VObject& object)
{
    Collection inputs;
    object.iterateParameters(VObject::kAllLevels, inputs);
    return std::move(inputs.slots);
}

std::vector<RefPtr<VObject>> upstreamOf(const RefPtr<VObject>& object)
{
    std::vector<RefPtr<VObject>> found{object};
    std::unordered_set<const VObject*> known{&*object};
    for (std::size_t at = 0; at < found.size(); ++at)
        for (const RefPtr<VSlot>& slot : inputsOf(*found[at]))
        {
            if (!slot->Parameter) continue;
            const RefPtr<VObject> source = slot->Parameter->source;
            if (source && known.insert(&*source).second) found.push_back(source);
        }
    return found;
}

} // namespace Zelm
