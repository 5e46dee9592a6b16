// Lines that a person types, with editing and history on a terminal if the build has libedit.
#pragma once

#include <optional>
#include <string>

// Shows `prompt` on standard output and reads a line of standard input without its end. Nothing at
// the end of input.
std::optional<std::string> readTypedLine(const std::string& prompt);

// Gives the terminal back the settings that it had before the first call of readTypedLine(). To be
// called before the process ends while another thread reads a line.
void restoreTerminal();
