#pragma once

#include <stdexcept>
#include <string>

namespace Zelm
{

/// Where something stands in a file, both counted from 1. A column is a character, not a byte.
struct Place
{
    int line = 0; ///< 0 where it stands in no file
    int column = 0;
};

/// A text in double quotes, with escapes for what would break a line or is no UTF-8.
std::string inQuotes(const std::string& text);

/// What the exception says that is being handled. Modules may throw what is no std::exception.
/// \pre there is one.
std::string wordsOfException();

/// What is wrong with a network, in one line for people, without a full stop:
///
///     geoid.json:7:41: object "region", key "values.width": a number is expected here
class NetworkError : public std::runtime_error
{
public:
    explicit NetworkError(const std::string& message) : std::runtime_error(message) {}

    /// \param file its name; may be empty.
    /// \param owner such as `object "region"`; may be empty.
    /// \param key may be empty.
    NetworkError(const std::string& file, Place place, const std::string& owner,
                 const std::string& key, const std::string& message);
};

} // namespace Zelm
