#include <quorl/kit/Module.h>
#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>
#include <quorl/kit/ValueTraits.h>

/// A type that two modules have in common, each with a copy of what describes it.
struct SharedDatum
{
    int number = 0;
    friend bool operator==(const SharedDatum&, const SharedDatum&) = default;
};

template <>
struct Quorl::VValueTrait<SharedDatum>
{
    static bool setValueFromText(SharedDatum& /*datum*/, const string& /*text*/) { return false; }
    static string Text(const SharedDatum& /*datum*/) { return {}; }
};

namespace
{

class Provider final : public Quorl::VObject
{
public:
    using VObject::VObject;

private:
    Quorl::OutputSlot<SharedDatum> out_{*this, "out"};
};

Quorl::VCreator<Provider> provider("Shared/" ZELM_MODULE_STEM, {.accepts = {typeid(SharedDatum)},
                                                                .provides = {typeid(SharedDatum)}});

/// A domain of this module's own.
class Item final : public Quorl::VManagedDomainObject<Item>
{
public:
    explicit Item(const std::string& wantedName) { insert(wantedName, 0); }
};

// The registry has it, until the module is unloaded.
const Quorl::WeakPtr<Quorl::VManagedObject> item(new Item("Shared item of " ZELM_MODULE_STEM));

} // namespace

#define DEFINE_MODULE(stem) ZELM_MODULE(stem)
DEFINE_MODULE(STEM)
{
    return true;
}
