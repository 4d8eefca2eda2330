#include <quorl/modules/VSaveable.h>

namespace Quorl
{

struct VSaveable::Savers
{
};

VSaveable::VSaveable() : savers_(new Savers) {}
VSaveable::~VSaveable() = default;

} // namespace Quorl
