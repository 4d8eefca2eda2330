#include <tests/model/WalkActors.h>

#include <tests/model/PlainWalk.h>

#include <string>

/// Each kind of object overrides some operations more, so that the others stay the kernel's own.
namespace QuorlTest::Walks
{

using Quorl::RefPtr;
using Quorl::VObject;
using Quorl::VRequest;
using Quorl::VSlot;
using Quorl::WeakVObjectPtr;

namespace
{

template <class Walked>
class Actor : public Walked
{
public:
    Actor(Network& itsNetwork, const std::string& givenName, int itsNumber)
        : Walked(givenName, 0, {}), network(itsNetwork), number(itsNumber)
    {
    }

    bool update(VRequest& request, double precision) override
    {
        return network.update(number, request, precision);
    }

    Network& network;
    const int number;
};

template <class Base>
class MustUpdate : public Base
{
public:
    using Base::Base;

    bool must_update(const VRequest& request, double precision) const override
    {
        this->network.run(this->number, kInMust, &request, precision);
        return this->network.behaviour(this->number, kMust) != 0;
    }
};

template <class Base>
class Ignores : public Base
{
public:
    using Base::Base;

    bool ignoreInput(const RefPtr<VSlot>& slot) const override
    {
        this->network.run(this->number, kInIgnore, nullptr, this->network.numberOf(*slot));
        const int ignored = this->network.behaviour(this->number, kIgnored);
        const bool isIgnored = (ignored >> (this->network.numberOf(*slot) % 4) & 1) != 0;
        return isIgnored || Base::ignoreInput(slot);
    }
};

template <class Base>
class Tells : public Base
{
public:
    using Base::Base;

    bool hasRequest(const VRequest& request) const override
    {
        this->network.run(this->number, kInTell, &request);
        return Base::hasRequest(request) != this->network.tellsLies(this->number);
    }
};

template <class Base>
class Unsynchronous : public Base
{
public:
    using Base::Base;

    bool unsychronized_update(VRequest& request, double precision) override
    {
        this->network.run(this->number, kInUnlocked, &request, precision);
        return this->network.behaviour(this->number, kUnlocked) != 0;
    }
};

template <class Base>
class Asks : public Base
{
public:
    using Base::Base;

    bool request(VRequest& request, double precision, const WeakVObjectPtr& caller,
                 const WeakVObjectPtr& origin) override
    {
        const int from = 100 * this->network.numberOf(caller) + this->network.numberOf(origin);
        this->network.run(this->number, kBeforeRequest, &request, from);
        const bool answer = this->answer(request, precision, caller, origin);
        this->network.run(this->number, kAfterRequest, &request, precision);
        return answer;
    }

private:
    bool answer(VRequest& request, double precision, const WeakVObjectPtr& caller,
                const WeakVObjectPtr& origin)
    {
        const int how = this->network.behaviour(this->number, kAnswer);
        if (how == kSaysFalse || how == kSaysTrue) return how == kSaysTrue;
        const bool answer = Base::request(request, precision, caller, origin);
        return how == kWalks ? answer : Base::request(request, precision, caller, origin);
    }
};

template <class Walked>
VObject* make(Network& network, const std::string& name, int number, int kind)
{
    using Plain = Actor<Walked>;
    switch (kind)
    {
        case kBare: return new Walked(name, 0, {});
        case kMustUpdate: return new MustUpdate<Plain>(network, name, number);
        case kIgnores: return new Ignores<Plain>(network, name, number);
        case kTells: return new Tells<Plain>(network, name, number);
        case kUnsynchronous: return new Unsynchronous<Plain>(network, name, number);
        case kAsks: return new Asks<Plain>(network, name, number);
        case kAll:
            return new Asks<MustUpdate<Ignores<Tells<Unsynchronous<Plain>>>>>(network, name,
                                                                              number);
        default: return new Plain(network, name, number);
    }
}

} // namespace

VObject* makeWalkedByKernel(Network& network, const std::string& name, int number, int kind)
{
    return make<KernelWalked>(network, name, number, kind);
}

VObject* makeWalkedPlainly(Network& network, const std::string& name, int number, int kind)
{
    return make<PlainlyWalked>(network, name, number, kind);
}

} // namespace QuorlTest::Walks
