#pragma once

#include "Json.h"

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <optional>
#include <string>

/// Values as they stand in network files:
///
/// | type                       | JSON                                                    |
/// |----------------------------|---------------------------------------------------------|
/// | whole and floating numbers | a number that gives the datum back, to the last bit     |
/// | those that are not finite  | "inf", "-inf", "nan"                                    |
/// | `bool`                     | true, false                                             |
/// | text                       | a text                                                  |
/// | any other                  | `{"type": ..., "text": ...}`, its text form             |
namespace Zelm
{

using Quorl::RefPtr;

/// \return nothing if the type has no text form that can be read again.
/// \throws NetworkError for a text that is not UTF-8.
std::optional<Json> jsonOf(const Quorl::VValueBase& value);

/// Gives a value its datum. A plain text is taken for a type of any text form, too.
/// \throws NetworkError, without a place, if it is not one of its type; the value then stands.
void setFromJson(Quorl::VValueBase& value, const Json& json);

/// The same for a text that somebody has typed. Unlike the text forms of the kernel, this refuses
/// what is no number.
void setFromText(Quorl::VValueBase& value, const std::string& text);

/// A new value of a type that is told by its readable name.
/// \throws NetworkError also if there is no such type.
RefPtr<Quorl::VValueBase> valueFromJson(const std::string& type, const Json& json);

} // namespace Zelm
