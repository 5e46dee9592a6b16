// What only the tools need from the operating system: terminals and limits. Implemented in
// systemPosix.cpp and systemWindows.cpp.
#pragma once

#include <cstddef>

// Whether the stream goes to a terminal.
bool isStandardOutputTerminal();
bool isStandardErrorTerminal();
// Columns of the terminal of standard output; 0 if there is none or its width is not known.
std::size_t getTerminalWidth();

// Raises the limit of open files and pipes to the most that the system allows.
void raiseFileLimit();
