#include <tests/model/WalkNetwork.h>

#include <quorl/slots/VSlotTables.h>
#include <tests/model/At.h>

#include <algorithm>
#include <thread>
#include <utility>

/// How a network changes, inside of a walk too.
namespace QuorlTest::Walks
{

using Quorl::Ageable;
using Quorl::RefPtr;
using Quorl::ValuePool;
using Quorl::VObject;
using Quorl::VParameter;
using Quorl::VRequest;
using Quorl::VSlot;
using Quorl::WeakPtr;

namespace
{

constexpr int kMostInputs = 5;     // of an object
constexpr int kLevelsOfStart = 3;  // of inputs
constexpr int kLevelOfWalked = 50; // behind, or ahead of, all others
constexpr int kTouchesOfOneByAThread = 8;

} // namespace

/// Whether an evaluation goes through its inputs.
bool Network::isWalked(const VObject& object)
{
    return object.RequestCounter.value() != object.UpdateCounter.value();
}

bool Network::performOnWiring(const Move& move)
{
    if (move.kind == Move::NewSlot)
    {
        newSlot(move);
        isWiringKnown_ = false;
        return true;
    }
    if (move.kind == Move::Leave)
    {
        leave(within(move.a, objects_.size()));
        isWiringKnown_ = false;
        return true;
    }
    if (move.kind == Move::WriteSource)
    {
        const RefPtr<VObject> source = object(move.b);
        const bool isKept = move.c % 4 != 0;
        parameter(move.a)->source =
            isKept ? WeakPtr<Quorl::VSlotContainer>(source) : WeakPtr<Quorl::VSlotContainer>();
        isWiringKnown_ = false;
        return true;
    }
    if (slots_.empty()) return false;
    const int number = within(move.a, slots_.size());
    VSlot& slot = *slots_[at(number)];
    switch (move.kind)
    {
        case Move::Attach: attach(move); break;
        case Move::Empty:
            if (ignoring_ == 0) slot.assignParameter({}, "");
            break;
        case Move::WriteParameter:
            slot.Parameter =
                move.c % 4 == 0 && ignoring_ == 0 ? RefPtr<VParameter>() : parameter(move.b);
            break;
        case Move::WriteSlot:
            if (move.c % 2 == 0)
                slot.InputClass = move.b % 3;
            else
                slot.Member = move.b % 2 == 0 ? "" : "part";
            break;
        case Move::DropSlot: dropSlot(number); break;
        default: return false;
    }
    isWiringKnown_ = false;
    return true;
}

/// Mostly to what comes before the object, so that most networks stay without cycles.
void Network::attach(const Move& move)
{
    const int slot = within(move.a, slots_.size());
    const int owner = slotOwners_[at(slot)];
    RefPtr<VParameter> shown = parameter(move.b);
    const bool mayCycle = move.c % 4 == 0;
    if (!mayCycle && shown->source && numberOf(shown->source) >= owner && owner > 0)
        shown = parameters_[at(outputs_[at(within(move.b, at(owner)))].front())];
    Quorl::VSlotContainer::attachParameter(shown, slots_[at(slot)], move.c % 8 == 1 ? "part" : "");
}

/// Inputs must not come or go at the level at which a walk is: of an object that is walked, the new
/// one stands at a level of its own.
void Network::newSlot(const Move& move)
{
    const int owner = within(move.a, objects_.size());
    const RefPtr<VObject> found = object(owner);
    if (!found || std::ranges::count(slotOwners_, owner) >= kMostInputs) return;
    const int count = static_cast<int>(slots_.size());
    const int side = move.b % 2 == 0 ? 1 : -1;
    const int level = isWalked(*found) ? side * (kLevelOfWalked + count) : move.b % kLevelsOfStart;
    const int flavour = move.b / kLevelsOfStart % 8;
    const char first = "abc"[move.b / kLevelsOfStart / 8 % 3];
    const std::string name = (flavour == 4 ? "qZelm::" : "") + (first + std::to_string(count));

    const bool isOwn = move.c == 0;
    const int producer = within(move.c - (isOwn ? 0 : 1), objects_.size());
    const RefPtr<VParameter> shown =
        isOwn ? parameters_[at(newParameter(name))]
              : parameters_[at(
                    outputs_[at(producer)][at(move.b % 2) % outputs_[at(producer)].size()])];
    const RefPtr<VSlot> slot = found->addParameter(name, level, shown, false);
    if (flavour == 5) slot->InputClass = 1;
    if (flavour == 6) slot->Member = "part";
    if (flavour == 7 && isOwn) shown->Localize();
    slots_.push_back(slot);
    slotOwners_.push_back(owner);
}

void Network::dropSlot(int number)
{
    const RefPtr<VObject> owner = object(slotOwners_[at(number)]);
    if (owner && !isWalked(*owner)) owner->removeParameter(slots_[at(number)]->Name);
}

void Network::leave(int number)
{
    if (number == 0 || !owned_[at(number)]) return;
    const RefPtr<VObject> leaving = std::exchange(owned_[at(number)], {});
    leaving->VManagedObject::remove();
}

void Network::touch(const Move& move)
{
    const auto touchIt = [&] { parameter(move.a)->touchValue(pool(move.b)); };
    if (move.c % kTouchesOfOneByAThread == 0)
        std::thread(touchIt).join();
    else
        touchIt();
}

bool Network::performOnAges(const Move& move)
{
    const RefPtr<VObject> found = object(move.a);
    switch (move.kind)
    {
        case Move::Touch: touch(move); break;
        case Move::SetText:
            parameter(move.a)->setValueFromText("1", pool(move.b), "", true, {}, nullptr, nullptr);
            break;
        case Move::Locality: changeLocality(move); break;
        case Move::WriteParameterAge: {
            const RefPtr<Quorl::VValueBase> value = parameter(move.a)->getValue(pool(move.b), "");
            value->age() = anyAge(move.c, value->age());
            break;
        }
        case Move::WriteAge:
            if (found) found->age(pool(move.b)) = anyAge(move.c, found->age(pool(move.b)));
            break;
        case Move::WriteConnection:
            if (found) found->Slots->InputSetAge = anyAge(move.c, found->ConnectionAge());
            break;
        case Move::TouchState:
            if (found) found->myState(pool(move.b))->touch();
            break;
        case Move::WriteState:
            if (found) writeState(move);
            break;
        case Move::WriteLentState:
            if (found) writeLentState(move);
            break;
        default: return false;
    }
    return true;
}

/// Some age that there is, or one beside it.
Ageable Network::anyAge(int from, const Ageable& present) const
{
    const RefPtr<VObject> other = object(from / 8);
    switch (from % 8)
    {
        case 0: return Ageable::Ooooold;
        case 1: return Ageable(0);
        case 2: return Ageable(present.stamp() - 1);
        case 3: return Ageable(present.stamp() + 1);
        case 4: return Ageable(Ageable::GlobalTime.stamp());
        case 5: return other ? other->LocalAge : present;
        case 6: return other ? other->ConnectionAge() : present;
        default: return parameter(from / 8)->defaultValue->age();
    }
}

void Network::writeState(const Move& move)
{
    const VObject& found = *object(move.a);
    const RefPtr<ValuePool>& where = pool(move.b);
    switch (move.c % 5)
    {
        case 0: found.setState(where, {}); break;
        case 1: found.setState(where, found.newState()); break;
        case 2:
            lentStates_.erase({within(move.a, objects_.size()), within(move.b, pools_.size())});
            found.removeState(where);
            break;
        default: {
            Ageable& age = *found.myState(where);
            age = anyAge(move.c / 5, age);
        }
    }
}

/// Nobody else hears of it.
void Network::writeLentState(const Move& move)
{
    const VObject& found = *object(move.a);
    State*& lent = lentStates_[{within(move.a, objects_.size()), within(move.b, pools_.size())}];
    if (!lent) lent = &found.getState(pool(move.b));
    if (move.c % 4 == 0)
        *lent = State();
    else
    {
        const State replacement = found.newState();
        Ageable& age = *replacement;
        age = anyAge(move.c / 4, age);
        *lent = replacement;
    }
}

void Network::changeLocality(const Move& move)
{
    VParameter& changed = *parameter(move.a);
    const RefPtr<ValuePool>& where = pool(move.b);
    switch (move.c % 5)
    {
        case 0: changed.Localize(); break;
        case 1: changed.Globalize(where); break;
        case 2: changed.local = !changed.local; break;
        case 3: changed.getLocalValue(where, "", true); break;
        default:
            if (where) where->removeVariable(parameter(move.a));
    }
}

bool Network::performOnObject(const Move& move)
{
    const RefPtr<VObject> found = object(move.a);
    if (!found) return false;
    switch (move.kind)
    {
        case Move::Ready: found->RequestProcessing = move.b % 3 != 0; break;
        case Move::Classes:
            if (!found->classes.insert(move.b % 3).second) found->classes.erase(move.b % 3);
            break;
        case Move::Release: release(move); break;
        case Move::WriteTrace: writeTrace(move); break;
        case Move::WriteExecutor: writeExecutor(move); break;
        case Move::Validator:
            if (move.b % 2 == 0)
                validators_[at(within(move.a, objects_.size()))] = new Quorl::VConnectionValidator;
            found->insertConnectionValidator(validators_[at(within(move.b, objects_.size()))]);
            break;
        case Move::Look:
            look(within(move.a, objects_.size()));
            if (found->Latest) recordTable(*found->Latest);
            break;
        case Move::Graph: transcript_.note("graph", found->ExecutionGraphHasChanged()); break;
        default: return false;
    }
    return true;
}

void Network::release(const Move& move)
{
    const bool isAll = move.c % 2 == 0;
    for (int number = 0; number < static_cast<int>(objects_.size()); ++number)
        if (const RefPtr<VObject> found = object(number);
            found && (isAll || number == within(move.a, objects_.size())))
            found->Current = WeakPtr<VRequest::ID>();
}

void Network::writeTrace(const Move& move)
{
    VObject& found = *object(move.a);
    const int number = within(move.b, evaluations_.size() + 1);
    const WeakPtr<VRequest::ID> id =
        at(number) < evaluations_.size() ? evaluations_[at(number)] : WeakPtr<VRequest::ID>();
    switch (move.c % 3)
    {
        case 0: found.Current = id; break;
        case 1: found.Previous = id; break;
        default: found.Latest = id;
    }
}

void Network::writeExecutor(const Move& move)
{
    const RefPtr<VObject> found = object(move.a);
    const RefPtr<VObject> other = object(move.b);
    Quorl::RequestExecutor& executor = found->Executor;
    switch (move.c % 6)
    {
        case 0: executor.Level = move.b % 6; break;
        case 1: executor.PreviousLevel = move.b % 6 - 1; break;
        case 2: executor.Max->Changes = move.b % 6; break;
        case 3: executor.reset(); break;
        case 4:
            if (other) executor.Max = other->Executor.Max;
            break;
        default:
            if (other) executor = other->Executor;
    }
}

} // namespace QuorlTest::Walks
