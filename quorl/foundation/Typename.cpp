#include <quorl/foundation/Typename.h>

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace Tolmen
{

namespace
{

std::string readable(const char* name)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(name, nullptr, nullptr, &status), &std::free);
    return status == 0 && text ? text.get() : name;
}

} // namespace

std::string Typename(const std::type_info& type)
{
    return readable(type.name());
}

std::string Typename(const TypeInfo& type)
{
    return readable(type.name().c_str());
}

} // namespace Tolmen
