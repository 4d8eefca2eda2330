#include <quorl/registry/VCreatorBase.h>

#include <quorl/foundation/Chunk.h>
#include <quorl/foundation/DeadEntries.h>
#include <quorl/foundation/StringUtil.h>
#include <quorl/objects/VObject.h> // the parent of a child to be named
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorCategory.h>

#include <cstdio>
#include <map>
#include <vector>

namespace Quorl
{
namespace
{

constexpr char kNameSeparator = '\x1E';
constexpr char kInfoSeparator = '\x1F';

struct Identifiers
{
    std::multimap<string, WeakPtr<VCreatorBase>> creators;
    Tolmen::DeadEntries dead;
};

Identifiers& IdentifierMap()
{
    static auto& table = *new Identifiers; // asked until the very end
    return table;
}

void registerIdentifier(const string& identifier, const WeakPtr<VCreatorBase>& creator)
{
    Identifiers& table = IdentifierMap();
    table.dead.takeOut(table.creators, [](const auto& entry) { return !entry.second; });
    table.creators.emplace(identifier, creator);
}

struct Application
{
    VCreatorBase::ApplicationProperties properties;
    Tolmen::DeadEntries dead; // of its creators
};

std::map<string, Application>& theApplications()
{
    static auto& table = *new std::map<string, Application>; // asked until the very end
    return table;
}

void registerApplication(Application& application, const WeakPtr<VCreatorBase>& creator)
{
    auto& creators = application.properties.creators;
    application.dead.takeOut(creators, [](const auto& entry) { return !entry; });
    creators.push_back(creator);
}

void registerApplications(const string& list, const WeakPtr<VCreatorBase>& creator)
{
    std::vector<string> names;
    Tolmen::StringUtil::split(list, names, ';', false, '\0');
    for (const string& name : names) registerApplication(theApplications()[name], creator);
}

/// Deliberate: kills nothing. Pinned by VCreatorBase.DeletesNoInstances.
struct ObjectKiller final : VManagedObjectIterator
{
    explicit ObjectKiller(const std::type_info& victims) : type(victims) {}

    bool apply(int /*priority*/, const RefPtr<VManagedObject>& /*object*/,
               const string& /*name*/) override
    {
        return true;
    }

    const std::type_info& type;
};

} // namespace

VCreatorBase::ApplicationProperties::ApplicationProperties() = default;
VCreatorBase::ApplicationProperties::~ApplicationProperties() = default;
VCreatorBase::ApplicationIterator::~ApplicationIterator() = default;
VCreatorBase::IdentifierIterator::~IdentifierIterator() = default;

bool VCreatorBase::ApplicationProperties::isEnabled() const
{
    const RefPtr<Tolmen::Chunk<bool>> enabled = attributes.getAttribute("Enabled");
    return !enabled || enabled->empty() || enabled->front();
}

VCreatorBase::VCreatorBase(const string& key, int givenPriority,
                           const RefPtr<VCreationPreferences>& givenPreferences, bool pinned,
                           const char* givenText)
    : VInputCreatorBase(key, givenPriority, givenPreferences, givenText),
      VCreatorProperties(key, "", "")
{
    enterTables(pinned);
}

VCreatorBase::VCreatorBase(const VCreatorProperties& properties, int givenPriority,
                           const RefPtr<VCreationPreferences>& givenPreferences, bool pinned,
                           const char* givenText)
    : VInputCreatorBase(properties.keyname("/"), givenPriority, givenPreferences, givenText),
      VCreatorProperties(properties)
{
    enterTables(pinned);
}

VCreatorBase::~VCreatorBase() = default;

void VCreatorBase::enterTables(bool pinned)
{
    if (getName().empty())
    {
        std::printf("\n************ WARNING: VCreatorBase::VCreatorBase(,%d) EMPTY creator name in "
                    "Zelm Module\n\t%s\n *** no key available!\n\n",
                    VInputCreatorBase::priority, text ? text : "");
        std::fflush(stdout);
    }
    const WeakPtr<VCreatorBase> myself(this);
    registerIdentifier(element[Name], myself);
    registerApplications(element[Applications], myself);
    VCreatorCategory::addCreator(myself);
    if (pinned) myself.ref(); // last: a share would outlast a constructor that fails
}

string VCreatorBase::createChildname(const string& base) const
{
    return base.empty() ? getName() : base + kNameSeparator + getName();
}

string VCreatorBase::createChildname(const WeakPtr<VObject>& parent,
                                     const RefPtr<VAcceptInfo>& info) const
{
    const string& identifier = element[Name];
    if (!parent || !info) return identifier;
    const string childName = createChildname(parent->getName());
    return !childName.empty() ? childName
                              : identifier + kNameSeparator + kInfoSeparator + info->name;
}

void VCreatorBase::deleteAllInstances(const std::type_info& type) const
{
    ObjectKiller killer(type);
    VManagedObject::traverse(typeid(VObject), killer);
}

int VCreatorBase::iterateApplications(ApplicationIterator& visitor)
{
    int count = 0;
    for (auto& [name, application] : theApplications())
    {
        const Tolmen::DeadEntries::Walk walk(application.dead);
        if (!visitor.apply(name, application.properties)) break;
        ++count;
    }
    return count;
}

int VCreatorBase::iterateIdentifiers(const string& identifier, IdentifierIterator& visitor)
{
    int count = 0;
    const Tolmen::DeadEntries::Walk walk(IdentifierMap().dead);
    const auto& table = IdentifierMap().creators;
    for (auto entry = table.lower_bound(identifier);
         entry != table.end() && entry->first == identifier; ++entry)
    {
        if (!entry->second) continue;
        if (!visitor.apply(entry->second)) break;
        ++count;
    }
    return count;
}

} // namespace Quorl
