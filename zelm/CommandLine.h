#pragma once

#include "Settings.h"

#include <CLI/CLI.hpp>

namespace Zelm
{

/// Adds all that the program can be told: options for all commands, the commands, and examples.
/// \param settings receives what is told; has to live as long as `program`.
void addCommandLine(CLI::App& program, Settings& settings);

} // namespace Zelm
