#include <quorl/foundation/AddressString.h>

#include <array>
#include <cstdio>

namespace Tolmen
{

std::string to_address_string(const void* address)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%p", address);
    return text.data();
}

} // namespace Tolmen
