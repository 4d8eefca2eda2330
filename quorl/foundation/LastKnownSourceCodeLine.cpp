#include <quorl/foundation/LastKnownSourceCodeLine.h>

namespace Tolmen
{
namespace
{

constinit thread_local const char* lastKnownLine = nullptr;

} // namespace

void SetLastKnownSourceCodeLine(const char* text)
{
    lastKnownLine = text;
}

const char* getLastKnownSourceCodeLine()
{
    return lastKnownLine;
}

} // namespace Tolmen
