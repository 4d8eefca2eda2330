#include "Harm.h"

#include <deque>

class Quiet final : public Quorl::VObject
{
public:
    using VObject::VObject;
};

static const std::deque<Quorl::VCreator<Quiet>> creators = [] {
    std::deque<Quorl::VCreator<Quiet>> made;
    for (int number = 0; number < 102; ++number) made.emplace_back("Harm/A");
    return made;
}();

ZELM_MODULE(harm)
{
    return creators.size() == 102;
}
