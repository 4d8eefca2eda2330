#include <quorl/foundation/Attributes.h>

namespace Tolmen
{

Attributes::Attributes() = default;
Attributes::~Attributes() = default;
Attributes::Attributes(const Attributes& other) = default;
Attributes& Attributes::operator=(const Attributes& other) = default;

RefPtr<ChunkBase> Attributes::getAttribute(const std::string& name) const
{
    const auto found = values_.find(name);
    return found == values_.end() ? RefPtr<ChunkBase>() : found->second;
}

void Attributes::setAttribute(const std::string& name, const RefPtr<ChunkBase>& value)
{
    values_[name] = value;
}

} // namespace Tolmen
