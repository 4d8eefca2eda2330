#include <quorl/foundation/Attributes.h>

#include <quorl/foundation/FindOrNull.h>

namespace Tolmen
{

Attributes::Attributes() = default;
Attributes::~Attributes() = default;
Attributes::Attributes(const Attributes& other) = default;
Attributes& Attributes::operator=(const Attributes& other) = default;

RefPtr<ChunkBase> Attributes::getAttribute(const std::string& name) const
{
    return findOrNull(values_, name);
}

void Attributes::setAttribute(const std::string& name, const RefPtr<ChunkBase>& value)
{
    values_[name] = value;
}

} // namespace Tolmen
