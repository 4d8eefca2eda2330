#include "NetworkError.h"

#include "Json.h"

#include <exception>

namespace Zelm
{
namespace
{

std::string located(const std::string& file, Place place)
{
    if (place.line == 0) return file.empty() ? std::string() : file + ": ";
    return file + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": ";
}

std::string described(const std::string& owner, const std::string& key)
{
    if (key.empty()) return owner.empty() ? std::string() : owner + ": ";
    return (owner.empty() ? std::string() : owner + ", ") + "key " + inQuotes(key) + ": ";
}

} // namespace

std::string inQuotes(const std::string& text)
{
    return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string wordsOfException()
try
{
    throw;
}
catch (const std::exception& error)
{
    return error.what();
}
catch (...)
{
    return "something was thrown that does not say what it is";
}

NetworkError::NetworkError(const std::string& file, Place place, const std::string& owner,
                           const std::string& key, const std::string& message)
    : std::runtime_error(located(file, place) + described(owner, key) + message)
{
}

} // namespace Zelm
