#include <quorl/kit/Module.h>
#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>

#include <cstdio>

/// A module that does what it should, and says so.
namespace
{

class Answering final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double /*precision*/) override
    {
        std::printf("Good/" ZELM_MODULE_STEM " answers\n");
        answer_.set(request, 1);
        return true;
    }

private:
    const Quorl::OutputSlot<int> answer_{*this, "answer"};
};

Quorl::VCreator<Answering> answering("Good/" ZELM_MODULE_STEM, {.provides = {typeid(int)}});

} // namespace

#define DEFINE_MODULE(stem) ZELM_MODULE(stem)
DEFINE_MODULE(STEM)
{
    initialization.title = "answers";
    return true;
}
