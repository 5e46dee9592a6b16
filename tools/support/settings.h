// Settings of the engine on a command line: --set NAME=VALUE.
#pragma once

#include "search/engineParameters.h"
#include "support/cli.h"

#include <string>
#include <vector>

// Declares the option, which may be repeated.
void addSettings(Program& program, std::vector<std::string>& settings);

// Applies settings such as "QuiscenceMaxDepth=4" in their order. UsageError, with the known names,
// if one of them is not a known name with a whole number.
void applySettings(const std::vector<std::string>& settings, EngineConfig& config);
