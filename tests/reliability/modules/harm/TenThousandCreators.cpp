#include "Harm.h"

#include <deque>
#include <string>

/// Quiet, as there are so many.
class Quiet final : public Quorl::VObject
{
public:
    using VObject::VObject;
};

static const std::deque<Quorl::VCreator<Quiet>> creators = [] {
    std::deque<Quorl::VCreator<Quiet>> made;
    for (int number = 0; number < 10'000; ++number)
        made.emplace_back("Harm/" + std::to_string(number));
    return made;
}();

ZELM_MODULE(harm)
{
    return creators.size() == 10'000;
}
