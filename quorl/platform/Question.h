#pragma once

#include <quorl/foundation/Export.h>

#include <string>

namespace Tolmen::Platform
{

/// Answers to the question what is to be done about a failure, by their numbers.
enum Answer : int
{
    Abort = 3,
    IgnoreAll = 4,
    Ignore = 5,
};

/// Asks on the terminal: a, l or i, and Enter alone ignores. Where standard input or standard error
/// is none, nothing is written, and the answer is to ignore: an unattended run does not wait.
TOLMEN_API Answer askOnTerminal(const std::string& caption, const std::string& text);

} // namespace Tolmen::Platform
