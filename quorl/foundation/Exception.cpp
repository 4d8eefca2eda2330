#include <quorl/foundation/Exception.h>

namespace Tolmen
{

Exception::Exception(const std::string& text) : text_(text) {}
Exception::Exception(const Exception& other) = default;
Exception& Exception::operator=(const Exception& other) = default;
Exception::~Exception() = default;

const char* Exception::what() const noexcept
{
    return text_.c_str();
}

MemoryException::~MemoryException() = default;

} // namespace Tolmen
