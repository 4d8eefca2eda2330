#pragma once

#include <quorl/foundation/Export.h>

#include <exception>
#include <string>

namespace Tolmen
{

/// Base of what the system throws.
class TOLMEN_API Exception : public std::exception
{
public:
    explicit Exception(const std::string& text = std::string());
    Exception(const Exception& other);
    Exception& operator=(const Exception& other);
    ~Exception() override;

    const char* what() const noexcept override;

private:
    std::string text_;
};

/// Memory has run out.
class TOLMEN_API MemoryException : public std::exception
{
public:
    ~MemoryException() override;
};

} // namespace Tolmen
