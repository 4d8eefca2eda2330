#pragma once

#include "Settings.h"

#include <CLI/CLI.hpp>

namespace Zelm
{

/// Each adds one command to the program, to be run when it is called.
void addRunCommand(CLI::App& program, const Settings& settings);
void addGraphCommand(CLI::App& program, const Settings& settings);
void addWhyCommand(CLI::App& program, const Settings& settings);
void addTraceCommand(CLI::App& program, const Settings& settings);
void addInspectCommand(CLI::App& program, const Settings& settings);
void addCacheCommand(CLI::App& program, const Settings& settings);
void addNewPluginCommand(CLI::App& program, const Settings& settings);

} // namespace Zelm
