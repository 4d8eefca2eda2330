#include "Journal.h"

namespace Geoid
{

bool Journal::noteRun(Quorl::VObject* object, Quorl::VRequest& request, double /*precision*/)
{
    if (!request.Attachments) return true;
    const Quorl::RefPtr<Journal> journal = request.Attachments->findInterface(typeid(Journal));
    if (journal) journal->runs_.emplace_back(object);
    return true;
}

} // namespace Geoid
