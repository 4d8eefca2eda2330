#include <quorl/foundation/ApplicationQuitter.h>

#include <quorl/foundation/VGlobals.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::ApplicationQuitter>;
} // namespace Tolmen

namespace Quorl
{

ApplicationQuitter::ApplicationQuitter()
{
    VGlobals::theGlobals().addQuitter(WeakPtr<ApplicationQuitter>(this));
}

ApplicationQuitter::~ApplicationQuitter() = default;

} // namespace Quorl
