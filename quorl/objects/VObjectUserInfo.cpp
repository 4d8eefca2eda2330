#include <quorl/objects/VObjectUserInfo.h>

namespace Quorl
{

VObjectUserInfo::VObjectUserInfo(const string& initialText) : text(initialText) {}
VObjectUserInfo::~VObjectUserInfo() = default;

} // namespace Quorl
