#include <quorl/foundation/Typename.h>

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace Tolmen
{

std::string Typename(const std::type_info& type)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return status == 0 && readable ? readable.get() : type.name();
}

} // namespace Tolmen
