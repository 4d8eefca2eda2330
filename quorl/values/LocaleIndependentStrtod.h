#pragma once

#include <quorl/Export.h>

/// Reads a decimal number whose point is always ".", whatever the locale.
///
/// Blanks, an optional sign, digits with at most one point, of which the first 18 count (leading
/// zeros too), and an optional exponent, whose letter and sign are consumed even if no digits
/// follow. Powers of ten go up to 511; beyond, `errno` becomes ERANGE. It never fails.
///
/// \param text the characters, ended by a zero.
/// \param end if not null, receives the first character not consumed; `text` itself, blanks and
/// all, if there are no digits. The number is then 0.0, with the sign that was read.
extern "C" QUORL_API double Zelm_locale_independent_strtod(const char* text, char** end);
