#include <quorl/kit/Module.h>
#include <quorl/kit/VCreator.h>

namespace
{

class Dotted final : public Quorl::VObject
{
public:
    using VObject::VObject;
};

Quorl::VCreator<Dotted> dotted("Dotted/A");

} // namespace

ZELM_MODULE(a.b)
{
    return true;
}
