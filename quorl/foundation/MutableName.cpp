#include <quorl/foundation/MutableName.h>

namespace Tolmen
{

MutableName::MutableName() = default;
MutableName::MutableName(const std::string& initialName) : name(initialName) {}
MutableName::~MutableName() = default;

std::string MutableName::BaseName(const std::string& compound, char separator)
{
    return compound.substr(0, compound.find(separator));
}

} // namespace Tolmen
