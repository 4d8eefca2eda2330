#pragma once

#include <stdexcept>

namespace Zelm
{

/// How the program ends, for the shell.
enum ExitCode : int
{
    Done = 0,
    Failed = 1,    ///< the network, its evaluation, or what was to be written
    WrongUsage = 2 ///< what was asked for on the command line
};

/// What was asked for cannot be meant; the message names the option. In one line, without a full
/// stop. All other exceptions mean that something failed.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace Zelm
