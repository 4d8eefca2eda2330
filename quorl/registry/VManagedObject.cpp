#include <quorl/registry/VManagedObject.h>

#include <quorl/modules/LoadScope.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h> // a name whose module is not loaded yet loads it
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>

#include <cstdio>

namespace Quorl
{
namespace
{

constexpr int kMostOfOneName = 100;

string digit(int number)
{
    return string(1, static_cast<char>('0' + number % 10));
}

/// The name of the `number`th duplicate. Deliberate: the digits stand ones first, so that the tenth
/// is 01 and the twelfth 21.
string derivedName(const string& name, int number)
{
    return name + digit(number) + (number > 9 ? digit(number / 10) : string());
}

/// \return the first name of the series that no live object has; empty if there is none.
string freeName(const VCreatorMap& domain, const string& name)
{
    string candidate = name;
    for (int number = 1; domain.liveCreator(candidate); ++number)
    {
        candidate = derivedName(name, number);
        if (number == kMostOfOneName) return {};
    }
    return candidate;
}

RefPtr<VCreatorBaseInfo> recordOfPresentModule()
{
    RefPtr<VCreatorBaseInfo> record(new VCreatorBaseInfo);
    record->ModuleName = VManagedObject::CurrentLoadModule;
    return record;
}

/// Makes an entry and a line of a name, if need be, and its record. An exception leaves none behind
/// that were not there.
VCreatorBaseInfo& enteredRecord(VCreatorMap& domain, const string& name, int priority)
{
    const std::size_t count = domain.size();
    VCreatorMap::Entry& entry = domain.entered(name);
    const bool isNew = domain.size() > count;
    try
    {
        if (!entry.second) entry.second = recordOfPresentModule();
        domain.addPriority(priority, name);
    }
    catch (...)
    {
        if (isNew) domain.erase(name);
        throw;
    }
    return *entry.second;
}

} // namespace

string VManagedObject::CurrentLoadModule;

VManagedObject::ModuleIterator::~ModuleIterator() = default;
VManagedObject::VRemoveItem::~VRemoveItem() = default;

VManagedObject::VManagedObject() = default;

VManagedObject::VManagedObject(const string& givenName, int givenPriority)
    : Tolmen::MutableName(givenName), priority(givenPriority)
{
}

VManagedObject::~VManagedObject() = default;

void VManagedObject::insert(const string& wantedName, int givenPriority)
{
    if (wantedName.empty())
    {
        std::printf("VManagedObject::insert<%s> REFUSE to insert empty object (%s)\n",
                    getDomainType().name(), CurrentLoadModule.c_str());
        return;
    }
    domainMap = Vmap(); // Deliberate: also of an object that is refused below.
    const string candidate = freeName(*domainMap, wantedName);
    if (candidate.empty())
    {
        std::printf("VManagedObject::insert(): Do you really need more than 100 instances of %s "
                    "?\n (object not registered!)\n",
                    wantedName.c_str());
        return;
    }
    setName(candidate);
    // Straight into the record: a strong handle in passing would end this object, which nobody
    // holds yet.
    enteredRecord(*domainMap, candidate, givenPriority).Creator =
        static_cast<const VManagedObjectBase*>(this)->self;
    priority = givenPriority;
}

bool VManagedObject::remove()
{
    if (!domainMap) return false;
    VCreatorMap* const domain = domainMap;
    domainMap = nullptr;
    return domain->remove(name); // this object may be gone now
}

void VManagedObject::setPriority(int newPriority)
{
    Vmap()->changePriority(newPriority, name);
    priority = newPriority;
}

string VManagedObject::getLoadModule() const
{
    const VCreatorMap* const domain = Vmap();
    const VCreatorMap::Entry* const entry = domain->lookUp(name);
    if (!entry) return "(creator not found)";
    if (!entry->second) return "(missing creator info)";
    return entry->second->ModuleName;
}

VCreatorMap* VManagedObject::Vmap() const
{
    return VCreators(getDomainType());
}

bool VManagedObject::InitDomain(const std::type_info& domain)
{
    VCreators(domain);
    return true;
}

int VManagedObject::size(const std::type_info& domain)
{
    const VCreatorMapTypes& domains = VCreatorTypes();
    const auto found = domains.find(domain);
    return found == domains.end() || !found->second ? 0 : static_cast<int>(found->second->size());
}

int VManagedObject::count()
{
    int sum = 0;
    for (const auto& [type, domain] : VCreatorTypes())
        if (domain) sum += static_cast<int>(domain->size());
    return sum;
}

RefPtr<VManagedObject> VManagedObject::find(const std::type_info& domain, const string& wantedName)
{
    const VCreatorMap* const map = VCreators(domain);
    const VCreatorMap::Entry* const entry = map->lookUp(wantedName);
    if (!entry || !entry->second) return {};
    if (const RefPtr<VManagedObject>& found = entry->second->getCreator()) return found;

    const string module = entry->second->ModuleName; // loading may change the table
    std::printf("VCreatorBaseInfo: No Creator, need to load [%s]\n", module.c_str());
    const bool isOnItsWay = static_cast<bool>(LoadScope::find(module)); // which is what asks
    if (isOnItsWay || !LoadVModule(module))
        std::printf("VCreatorBaseInfo: ERROR: Could not load [%s]!!\n", module.c_str());
    const RefPtr<VManagedObject> loaded = map->liveCreator(wantedName);
    if (!loaded)
        std::printf("VCreatorBaseInfo: Merde, module [%s] could not provide requested Creator. "
                    "This is not good. Really not good.\n",
                    module.c_str());
    return loaded;
}

bool VManagedObject::remove(const std::type_info& domain, const string& objectName)
{
    return VCreators(domain)->remove(objectName);
}

} // namespace Quorl
