#include <quorl/kit/Module.h>
#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>

/// Two creators. The objects of one answer a number that differs between two builds.
namespace
{

class Answering final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double /*precision*/) override
    {
        answer.set(request, ANSWER);
        return true;
    }
    const Quorl::OutputSlot<int> answer{*this, "answer"};
    const Quorl::OutputSlot<double> doubt{*this, "doubt"};
};

class Quiet final : public Quorl::VObject
{
public:
    using VObject::VObject;
};

#ifdef OTHER
#    define KEY(name) "Other/" name
#else
#    define KEY(name) "Versioned/" name
#endif

Quorl::VCreator<Answering> answering(KEY("Answering"), {.provides = {typeid(int)}});
Quorl::VCreator<Quiet> quiet(KEY("Quiet"));

} // namespace

#ifdef OTHER
ZELM_MODULE(other)
#else
ZELM_MODULE(versioned)
#endif
{
    initialization.title = "answers";
    return true;
}
