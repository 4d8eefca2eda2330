#include <quorl/slots/VSlotContainer.h>

#include <quorl/foundation/SteadyWalk.h>
#include <quorl/foundation/Typename.h>
#include <quorl/services/Vprintf.h>
#include <quorl/slots/InputCursor.h>
#include <quorl/slots/InputSearch.h>
#include <quorl/values/VValueBase.h>

#include <cstdio>
#include <set>

namespace Tolmen
{
template class ReferenceBase<Quorl::VSlotContainer::SetupFunctor>;
} // namespace Tolmen

namespace Quorl
{
namespace
{

constexpr int kTraceVerbosity = 100;

/// \return the number of visits that answered true; the first other one ends them.
template <class Visit>
int countInputs(const VSlotTables& tables, Visit&& visit)
{
    int count = 0;
    searchChangingInputs(tables, [&](const RefPtr<VSlot>& slot, int level) {
        if (!visit(slot, level)) return true;
        ++count;
        return false;
    });
    return count;
}

/// Gives a slot a parameter of its own.
RefPtr<VParameter> makeUnique(const RefPtr<VSlot>& slot, const string& prefix)
{
    const RefPtr<VParameter> copied = slot->Parameter->copy();
    if (!copied) return {};
    copied->setName(prefix + "." + slot->Name);
    slot->assignParameter(copied, "");
    return copied;
}

} // namespace

VSlotContainer::SetupFunctor::~SetupFunctor() = default;

VSlotContainer::VSlotContainer() : Slots(new VSlotTables) {}

VSlotContainer::~VSlotContainer() = default;

// Setting up

void VSlotContainer::setup(const VSlotSet& /*slots*/) {}

void VSlotContainer::addSetupFunction(SetupFunction function)
{
    SetupFunctions.insert(function);
}

void VSlotContainer::addSetupFunctor(const Tolmen::WeakPtrImpl<SetupFunctor, SetupFunctor>& functor)
{
    SetupFunctors.insert(functor);
}

void VSlotContainer::initialize(const VSlotSet& slots)
{
    const RefPtr<VSlotContainer> held = heldForVisits();
    setup(slots);
    Tolmen::walkMembersSteadily(SetupFunctions, [&](SetupFunction function) {
        if (function) function(this, slots);
        return true;
    });
    Tolmen::walkMembersSteadily(SetupFunctors, [&](const auto& functor) {
        if (functor) functor->apply(this, slots);
        return true;
    });
}

void VSlotContainer::initialize()
{
    initialize(VSlotSet());
}

void VSlotContainer::initialize(const WeakPtr<VSlot>& slot)
{
    VSlotSet slots;
    slots.insertSlot(slot, false);
    initialize(slots);
}

// Inputs

RefPtr<VSlot> VSlotContainer::addSlot(const RefPtr<VSlot>& added, int expertLevel, bool replace)
{
    if (!added) return {};
    const RefPtr<VSlot> slot = added; // it may be the one of its level that is replaced
    if (slot->Parameter && isVprintfAudible(kTraceVerbosity))
        Vprintf(kTraceVerbosity, "VSlotContainer::addSlot(%s,%s, %d)\n",
                Tolmen::Typename(slot->getType()).c_str(), slot->Name.c_str(), expertLevel);
    std::set<RefPtr<VSlot>, CompareSlots> entry{slot}; // ahead: a new level does not stay empty
    VNamedInputSet& level = Slots->Inputs[expertLevel];
    RefPtr<VSlot> former; // ends last, and may end the container, too
    const auto [place, isNew, refused] = level.insert(entry.extract(entry.begin()));
    if (replace && !isNew) former = level.replace(place, slot);
    // Deliberate: a refusal counts as a change of the connections, too.
    touchInputSetAge();
    return isNew || replace ? slot : RefPtr<VSlot>();
}

RefPtr<VSlot> addSlot(VSlotContainer* container, const RefPtr<VSlot>& slot, int expertLevel,
                      bool replace)
{
    if (!container || !slot) return {};
    return container->addSlot(slot, expertLevel, replace);
}

RefPtr<VSlot> VSlotContainer::addParameter(const string& name, int expertLevel,
                                           const RefPtr<VParameter>& parameter, bool replace)
{
    if (!parameter) return {};
    const RefPtr<VSlot> slot(new VSlot(this, parameter, name, ""));
    return addSlot(slot, expertLevel, replace);
}

bool VSlotContainer::removeParameter(const string& name)
{
    for (auto& [level, slots] : Slots->Inputs)
    {
        const auto found = slots.find(name);
        if (found == slots.end()) continue;
        const auto ended = slots.extract(found);
        touchInputSetAge();
        return true;
    }
    return false;
}

RefPtr<VSlot> VSlotContainer::getSlot(const string& name, int& expertLevel) const
{
    for (const auto& [level, slots] : Slots->Inputs)
    {
        const auto found = slots.find(name);
        if (found == slots.end() || !*found) continue;
        expertLevel = level;
        return *found;
    }
    return {};
}

RefPtr<VParameter> VSlotContainer::getParameter(const string& name) const
{
    int level = 0;
    const RefPtr<VSlot> slot = getSlot(name, level);
    return slot ? slot->Parameter : RefPtr<VParameter>();
}

RefPtr<VSlot> VSlotContainer::findSlot(const RefPtr<VParameter>& parameter) const
{
    RefPtr<VSlot> found;
    searchInputs(*Slots, [&](const RefPtr<VSlot>& slot, int) {
        if (!(slot->Parameter == parameter)) return false;
        found = slot;
        return true;
    });
    return found;
}

string VSlotContainer::getSlotName(const RefPtr<VParameter>& parameter) const
{
    const RefPtr<VSlot> slot = findSlot(parameter);
    return slot ? slot->Name : string();
}

int VSlotContainer::getNumberOfInputs() const
{
    return getNumberOfParameters(kAllLevels);
}

int VSlotContainer::getNumberOfParameters(int maxExpertLevel) const
{
    std::size_t count = 0;
    for (const auto& [level, slots] : Slots->Inputs)
        if (level <= maxExpertLevel) count += slots.size();
    return static_cast<int>(count);
}

RefPtr<VSlotContainer> VSlotContainer::heldForVisits() const
{
    return Tolmen::heldIfOwned(WeakPtr<VSlotContainer>(const_cast<VSlotContainer*>(this)));
}

int VSlotContainer::iterateParameters(int maxExpertLevel, VSlotIterator& visitor) const
{
    const RefPtr<VSlotContainer> held = heldForVisits();
    InputCursor inputs(*this, maxExpertLevel);
    while (inputs.next())
        if (!visitor.apply(inputs.slot(), inputs.level())) break;
    return inputs.finishedLevels();
}

int VSlotContainer::iterate_inputs(std::function<bool(const RefPtr<VSlot>&, int)> visit) const
{
    const RefPtr<VSlotContainer> held = heldForVisits();
    return countInputs(*Slots, visit);
}

int VSlotContainer::iterate_inputs(std::function<bool(VSlot&, int)> visit) const
{
    const RefPtr<VSlotContainer> held = heldForVisits();
    return countInputs(*Slots,
                       [&](const RefPtr<VSlot>& slot, int level) { return visit(*slot, level); });
}

int VSlotContainer::getExpertLevel(const RefPtr<VSlot>& wanted) const
{
    int found = kNoSuchSlot;
    if (!wanted) return found;
    searchInputs(*Slots, [&](const RefPtr<VSlot>& slot, int level) {
        if (!(slot == wanted)) return false;
        found = level;
        return true;
    });
    return found;
}

int VSlotContainer::getExpertLevel(const RefPtr<VParameter>& parameter) const
{
    return getExpertLevel(findSlot(parameter));
}

int VSlotContainer::getExpertLevel(const string& /*name*/) const
{
    return 0;
}

int VSlotContainer::setExpertLevel(const RefPtr<VSlot>& slot, int level)
{
    const int present = getExpertLevel(slot);
    const auto place = Slots->Inputs.find(present); // a slot may stand at the level of none as well
    const bool isThere = slot && place != Slots->Inputs.end() && place->second.contains(slot);
    if (!isThere || present == level) return present;
    if (!Slots->Inputs[level].insert(slot).second) return present; // the name is taken there
    Slots->Inputs[present].erase(slot);
    return level;
}

int VSlotContainer::setExpertLevel(const RefPtr<VParameter>& parameter, int level)
{
    return setExpertLevel(findSlot(parameter), level);
}

int VSlotContainer::setExpertLevel(const string& /*name*/, int /*level*/)
{
    std::puts("int VSlotContainer::setExpertLevel(const ParameterID&s, int EL): NOT IMPLEMENTED!");
    return 0;
}

RefPtr<VSlot> VSlotContainer::getUniqueInputSlot(const std::type_info& type)
{
    RefPtr<VSlot> found;
    searchInputs(*Slots, [&](const RefPtr<VSlot>& slot, int) {
        if (!isOfType(*slot, type)) return false;
        const bool isSecond = static_cast<bool>(found);
        found = isSecond ? RefPtr<VSlot>() : slot;
        return isSecond;
    });
    return found;
}

bool VSlotContainer::ignoreInput(const RefPtr<VSlot>& slot) const
{
    return slot->Name.starts_with("qZelm::");
}

RefPtr<VParameter> VSlotContainer::mkUniqueParameterInput(const RefPtr<VParameter>& parameter,
                                                          const string& prefix)
{
    const RefPtr<VSlot> slot = parameter ? findSlot(parameter) : RefPtr<VSlot>();
    if (slot) return makeUnique(slot, prefix);
    std::printf("Parameter %s not found.\n", parameter ? parameter->Name().c_str() : "");
    return {};
}

RefPtr<VParameter> VSlotContainer::mkUniqueParameterInput(const string& name, const string& prefix)
{
    int level = 0;
    const RefPtr<VSlot> slot = getSlot(name, level);
    std::puts("uniquying parameter");
    if (slot && slot->Parameter) return makeUnique(slot, prefix);
    std::printf("Parameter %s not found.\n", name.c_str());
    return {};
}

} // namespace Quorl
