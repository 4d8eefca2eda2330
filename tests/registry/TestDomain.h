#pragma once

#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <quorl/registry/VManagedDomainObject.h>
#include <tests/support/EmptyDomain.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <typeinfo>
#include <vector>

/// What the tests of managed objects share: domains of their own.
namespace QuorlTest
{

using Names = std::vector<std::string>;

/// The base of a domain for each test: `Tag` keeps them apart.
template <class Tag>
class Thing final : public Quorl::VManagedDomainObject<Thing<Tag>>
{
public:
    explicit Thing(const std::string& wantedName, int givenPriority = 0)
    {
        this->insert(wantedName, givenPriority);
    }
};

/// The domain of a test, which begins and ends without objects.
template <class Tag>
struct Domain
{
    using Object = Thing<Tag>;

    ~Domain() { emptyDomain(type()); }

    static const std::type_info& type() { return typeid(Object); }
    static Quorl::WeakPtr<Quorl::VManagedObject> add(const std::string& name, int priority = 0)
    {
        return Quorl::WeakPtr<Quorl::VManagedObject>(new Object(name, priority));
    }
    static Quorl::RefPtr<Quorl::VManagedObject> find(const std::string& name)
    {
        return Quorl::VManagedObject::find(type(), name);
    }

    /// What the cache leaves for a creator that is not loaded.
    static void addCached(const std::string& name, const std::string& module)
    {
        const Quorl::RefPtr<Quorl::VCreatorBaseInfo> info(new Quorl::VCreatorBaseInfo);
        info->ModuleName = module;
        (*Quorl::VCreators(type()))[name] = info;
    }
};

/// Notes what it is shown, and does in between what a test tells it.
struct ObjectVisit final : Quorl::VManagedObjectIterator
{
    bool apply(int priority, const Quorl::RefPtr<Quorl::VManagedObject>& object,
               const std::string& name) override
    {
        seen.push_back(name + std::to_string(priority));
        EXPECT_TRUE(object);
        return !between || between(name);
    }
    std::function<bool(const std::string&)> between;
    Names seen;
};

template <class Tag>
Names traverse(int from = Quorl::VManagedObject::kFirstPriority,
               int to = Quorl::VManagedObject::kLastPriority)
{
    ObjectVisit visit;
    const int count = Quorl::VManagedObject::traverse(typeid(Thing<Tag>), visit, from, to);
    EXPECT_EQ(count, static_cast<int>(visit.seen.size()));
    return visit.seen;
}

} // namespace QuorlTest
