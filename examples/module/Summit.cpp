#include <quorl/kit/Module.h>
#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>

#include <algorithm>

/// The higher of two heights, in metres.
class Summit final : public Quorl::VObject
{
public:
    using VObject::VObject;

    bool update(Quorl::VRequest& request, double /*precision*/) override
    {
        highest_.set(request, std::max(left_(request), right_(request)));
        return true;
    }

private:
    const Quorl::InputSlot<double> left_{*this, "left", 0.0, Quorl::perContext()};
    const Quorl::InputSlot<double> right_{*this, "right", 0.0, Quorl::perContext()};
    const Quorl::OutputSlot<double> highest_{*this, "highest"};
};

Quorl::VCreator<Summit> summit("Example/Summit", {.accepts = {typeid(double)},
                                                  .provides = {typeid(double)},
                                                  .summary = "The higher of two heights"});

ZELM_MODULE(summit)
{
    initialization.title = "Summits";
    return true;
}
