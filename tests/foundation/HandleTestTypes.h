#pragma once

#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/SpeakPtr.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Classes of one root, as the tests of handles use them.
namespace QuorlTest
{

using Tolmen::RefPtr;
using Tolmen::WeakPtr;

class Root : public Tolmen::ReferenceBase<Root>
{
public:
    Root() = default;
    Root(const Root&) = default;
    Root& operator=(const Root&) = default;
    ~Root() override
    {
        if (whenDestroyed) whenDestroyed();
    }
    void extremeUnction() override
    {
        ++unctions;
        if (whenEnding) whenEnding();
    }

    int unctions = 0;
    std::function<void()> whenEnding;
    std::function<void()> whenDestroyed;
};

class Left : public Root
{
public:
    int number = 1;
};

class Right : public Root
{
public:
    int number = 2;
};

/// Hands itself out before the derived class is constructed.
struct EarlyMaker : Root
{
    explicit EarlyMaker(const std::function<void(Root*)>& act) { act(this); }
};
struct LateMade final : EarlyMaker
{
    using EarlyMaker::EarlyMaker;
};

/// Strong and weak shares of the object of a handle.
using Counts = std::pair<int, int>;

inline Counts counts(const Tolmen::DynPtr<Root, Root>& handle)
{
    return {handle.referer->strong, handle.referer->weak};
}

/// Notes what handles report.
class Speaker final : public Tolmen::SpeakPtr
{
public:
    Speaker() : before_(setSpeaker(this)) {}
    ~Speaker() override { setSpeaker(before_); }
    Speaker(const Speaker&) = delete;
    Speaker& operator=(const Speaker&) = delete;

    void CriticalWarning(const std::type_info&, const std::type_info& object, const void*,
                         const void* referer) override
    {
        reports.push_back("critical");
        lastType = &object;
        lastReferer = referer;
    }
    void SelfConstruction(const std::type_info&, const void*, const void*) override
    {
        reports.push_back("self");
    }
    void InconsistentDynPtr(const std::type_info& behind, const std::type_info& wanted,
                            const std::type_info& actual, const void* fresh, const void* cached,
                            const void*, const void* cached2) override
    {
        reports.push_back("inconsistent");
        lastTypes = {&behind, &wanted, &actual};
        isSame = cached == cached2;
        lastFresh = fresh;
    }
    void printRS(const char* b, const char* a, const std::type_info&, bool invalid) override
    {
        reports.push_back(std::string(b) + "/" + a + (invalid ? "/dead" : "/null"));
    }
    void printRS(const char* b, const char* a, const std::type_info& object, long strong, long weak,
                 const std::type_info&, const void*, const void*) override
    {
        reports.push_back(std::string(b) + "/" + a + "/" + std::to_string(strong) + "/" +
                          std::to_string(weak));
        lastType = &object;
    }

    std::vector<std::string> reports;
    const std::type_info* lastType = nullptr;
    std::vector<const std::type_info*> lastTypes;
    const void* lastReferer = nullptr;
    const void* lastFresh = nullptr;
    bool isSame = false;

private:
    SpeakPtr* const before_;
};

} // namespace QuorlTest
