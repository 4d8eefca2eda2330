#include "TypeName.h"

#include <quorl/foundation/Typename.h>

#include <cctype>

namespace Zelm
{
namespace
{

constexpr const char* kString = "string";

std::string kernelString()
{
    return Tolmen::Typename(typeid(std::string));
}

bool isOfName(char sign)
{
    return std::isalnum(static_cast<unsigned char>(sign)) != 0 || sign == '_' || sign == ':';
}

/// Whether these signs are a name of their own, and not part of a longer one.
bool isWhole(const std::string& text, std::size_t at, std::size_t length)
{
    const std::size_t end = at + length;
    return (at == 0 || !isOfName(text[at - 1])) && (end == text.size() || !isOfName(text[end]));
}

std::string replaced(std::string text, const std::string& name, const std::string& other)
{
    for (auto at = text.find(name); at != std::string::npos;)
    {
        const bool isMeant = isWhole(text, at, name.size());
        if (isMeant) text.replace(at, name.size(), other);
        at = text.find(name, at + (isMeant ? other : name).size());
    }
    return text;
}

} // namespace

std::string typeNameOf(const std::type_info& type)
{
    return replaced(Tolmen::Typename(type), kernelString(), kString);
}

std::string kernelTypeName(const std::string& told)
{
    return replaced(told, kString, kernelString());
}

} // namespace Zelm
