#include <quorl/registry/VCreatorProperties.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// Any key is taken apart, and what is put together of the parts is a key that gives them back, if
/// no empty variant has got lost.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using Quorl::VCreatorProperties;
    const std::string key(reinterpret_cast<const char*>(data), size);
    const VCreatorProperties parts(key, "summary", "description");
    const std::string name = parts.keyname("/");
    const bool hasEmptyVariant = key.ends_with("()");
    if (!hasEmptyVariant && VCreatorProperties(name, "", "").keyname("/") != name) std::abort();

    std::size_t length = 0;
    for (const std::size_t index :
         {VCreatorProperties::Category, VCreatorProperties::Name, VCreatorProperties::Variant})
        length += parts.element[index].size();
    if (length > key.size()) std::abort();

    VCreatorProperties merged("Category/Name(Variant)", "", "");
    merged.assign(parts);
    merged.initializeFromKey(key);
    return 0;
}
