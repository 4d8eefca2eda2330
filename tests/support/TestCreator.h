#pragma once

#include <quorl/objects/VObject.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>

#include <functional>
#include <string>
#include <vector>

namespace QuorlTest
{

/// A creator that does what a test tells it.
class TestCreator final : public Quorl::VCreatorBase
{
public:
    explicit TestCreator(const std::string& key, int givenPriority = 0,
                         const Quorl::RefPtr<Quorl::VCreationPreferences>& offers = {},
                         const char* givenText = nullptr, bool pinned = false)
        : VCreatorBase(key, givenPriority, offers, pinned, givenText)
    {
    }
    explicit TestCreator(const Quorl::VCreatorProperties& properties, int givenPriority = 0)
        : VCreatorBase(properties, givenPriority, {}, false, nullptr)
    {
    }

    Quorl::RefPtr<Quorl::VObject> create(const std::string& wantedName,
                                         const Tolmen::Intercube& context) override
    {
        wantedNames.push_back(wantedName);
        return whenAsked ? whenAsked(wantedName, context) : Quorl::RefPtr<Quorl::VObject>();
    }

    Quorl::VAcceptInfoList accept(const Quorl::RefPtr<Quorl::VObject>& parent) override
    {
        return whenOffered ? whenOffered(parent) : Quorl::VAcceptInfoList();
    }

    std::function<Quorl::RefPtr<Quorl::VObject>(const std::string&, const Tolmen::Intercube&)>
        whenAsked;
    std::function<Quorl::VAcceptInfoList(const Quorl::RefPtr<Quorl::VObject>&)> whenOffered;
    std::vector<std::string> wantedNames;
};

/// Holds a managed object, and takes it out of the registry at its end.
template <class T>
class Registered
{
public:
    explicit Registered(T* object) : held_(object) {}
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;
    ~Registered() { drop(); }

    void drop()
    {
        if (held_) held_->VManagedObject::remove();
        held_ = Quorl::RefPtr<T>();
    }

    T* operator->() const { return held_.rawptr(); }
    T& operator*() const { return *held_; }
    operator const Quorl::RefPtr<T>&() const { return held_; }
    const Quorl::RefPtr<T>& handle() const { return held_; }

private:
    Quorl::RefPtr<T> held_;
};

} // namespace QuorlTest
